// The error log's size, its owner, and the obstacles that it must survive.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "tests/client/ErrorLogFixture.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/OrdinaryUser.h"

namespace dovrel {
namespace {

class ErrorLogTest : public test::ErrorLogFixture {};

TEST_F(ErrorLogTest, FurtherFailures_AreAppended) {
    append("Editor", "no driver");
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry + kEntry);
}

TEST_F(ErrorLogTest, NewLog_IsOpenToAllUsers) {
    append("Editor", "no driver");
    struct stat status = {};
    ASSERT_EQ(stat(logPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0777u);
}

TEST_F(ErrorLogTest, NewLogOfAHostWhoseUmaskTakesAllRights_IsOpenToAllUsersAndAddedTo) {
    const std::filesystem::path folder = std::filesystem::path(logPath()).parent_path();
    std::filesystem::create_directories(folder);
    for (auto at = folder; at.string().size() >= root_.path().size(); at = at.parent_path())
        std::filesystem::permissions(at, std::filesystem::perms::all);
    EXPECT_TRUE(holdsForOrdinaryUser([this] {
        umask(0777);
        append("Editor", "no driver");
        append("Editor", "no driver");
        return true;
    }));
    EXPECT_EQ(failures().size(), 2u);
    struct stat status = {};
    ASSERT_EQ(stat(logPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0777u);
}

TEST_F(ErrorLogTest, FullLog_IsRenamedOnceAndBegunAnew) {
    const std::string older(1024 * 1024 - 10, 'x');
    root_.write(kErrorLogFile, older);
    root_.write(std::string(kErrorLogFile) + ".old", "the one before");
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry);
    EXPECT_EQ(root_.read(std::string(kErrorLogFile) + ".old"), older);
    EXPECT_FALSE(exists(std::string(kErrorLogFile) + ".old.old"));
}

TEST_F(ErrorLogTest, ManyFailures_NeverMakeItLargerThanOneMebibyte) {
    const std::string message(16000, 'm');
    for (int round = 0; round < 150; ++round) {
        append("Editor", message.c_str());
        struct stat status = {};
        ASSERT_EQ(stat(logPath().c_str(), &status), 0);
        ASSERT_LT(status.st_size, 1024 * 1024);
    }
    EXPECT_TRUE(exists(std::string(kErrorLogFile) + ".old"));
}

// Every line feed takes six characters in the log.
TEST_F(ErrorLogTest, LongestEntryOfAll_FitsIntoTheLog) {
    const std::string lineFeeds(100000, '\n');
    FailureNotes::addServerError(27, lineFeeds);
    FailureNotes::addRequest([&] { return lineFeeds; });
    FailureNotes::addFailedStep(TraceArea::kConnection, [&] { return lineFeeds; });
    for (int round = 0; round < 3; ++round) {
        auto failure = std::make_unique<POSClassNotFoundException>(lineFeeds.c_str());
        failure->setDetail(lineFeeds.c_str());
        append(FailureReport(std::move(failure), "Editor"), lineFeeds.c_str());
        EXPECT_LT(content().size(), 1024u * 1024);
    }
    EXPECT_EQ(failures().size(), 1u) << "the others are in the older log";
}

TEST_F(ErrorLogTest, Link_IsNotFollowed) {
    root_.write("elsewhere", "untouched");
    append("Editor", "no driver");
    ASSERT_EQ(unlink(logPath().c_str()), 0);
    ASSERT_EQ(symlink(root_.path("elsewhere").c_str(), logPath().c_str()), 0);
    append("Editor", "no driver");
    EXPECT_EQ(root_.read("elsewhere"), "untouched");
}

TEST_F(ErrorLogTest, LogThatCannotBeWritten_IsGivenUpSilently) {
    append("Editor", "no driver");
    ASSERT_EQ(unlink(logPath().c_str()), 0);
    ASSERT_EQ(mkdir(logPath().c_str(), 0700), 0);
    append("Editor", "no driver");
    // rmdir succeeds only if it is still an empty folder.
    ASSERT_EQ(rmdir(logPath().c_str()), 0);
    // No process reads from this pipe. Opening or writing it must not block.
    ASSERT_EQ(mkfifo(logPath().c_str(), 0600), 0);
    append("Editor", "no driver");
    struct stat status = {};
    ASSERT_EQ(lstat(logPath().c_str(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    EXPECT_FALSE(exists(std::string(kErrorLogFile) + ".old"));
    ASSERT_EQ(unlink(logPath().c_str()), 0);
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry);
}

TEST_F(ErrorLogTest, FullDisk_CutsNoOtherEntry) {
    append("Editor", "no driver");
    const std::string before = content();
    for (const size_t room : {0, 1, 20}) {
        const test::FileSizeLimit limit(before.size() + room);
        append("Editor", "no driver");
    }
    append("Viewer", "other");
    const std::string after = content();
    EXPECT_EQ(after.substr(0, before.size()), before);
    const auto sections = ConfigFileSystem::readSections(after, "TIME");
    EXPECT_EQ(sections.back().getString("APPLICATION"), "Viewer");
    EXPECT_EQ(sections.back().getString("TIME"), "2026-11-15T18:19:00Z");
}

TEST_F(ErrorLogTest, FullDisk_ForANewLog_LeavesNone) {
    {
        const test::FileSizeLimit limit(20);
        append("Editor", "no driver");
        EXPECT_FALSE(exists(kErrorLogFile));
    }
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry);
}

// All processes have the log open when it is full, but only one of them may rename it.
TEST_F(ErrorLogTest, FullLogOfSeveralProcesses_IsRenamedOnce) {
    constexpr int kProcesses = 4;
    const std::string older(1024 * 1024 - 10, 'x');
    for (int round = 0; round < 50; ++round) {
        root_.write(kErrorLogFile, older);
        int start[2];
        ASSERT_EQ(pipe(start), 0);
        std::vector<pid_t> processes;
        for (int index = 0; index < kProcesses; ++index) {
            processes.push_back(fork());
            if (processes.back() == 0) {
                char byte = 0;
                close(start[1]);
                // The read ends in all processes at the same time, when the parent closes the pipe.
                const ssize_t count = read(start[0], &byte, 1);
                append("Editor", "no driver");
                _exit(static_cast<int>(count));
            }
        }
        close(start[0]);
        close(start[1]);
        for (const pid_t process : processes) {
            int status = 0;
            ASSERT_EQ(waitpid(process, &status, 0), process);
            EXPECT_EQ(status, 0);
        }
        const std::string old = root_.read(std::string(kErrorLogFile) + ".old");
        ASSERT_EQ(old.substr(0, older.size()), older) << "round " << round;
        EXPECT_EQ(entriesIn(old) + entriesIn(content()), kProcesses);
    }
}

TEST_F(ErrorLogTest, FullLogThatAnotherProcessLocksForever_GrowsToTwiceTheLargestSize) {
    root_.write(kErrorLogFile, std::string(1024 * 1024, 'x'));
    const int other = open(logPath().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    append("Editor", "no driver");
    EXPECT_EQ(entriesIn(content()), 1);
    root_.write(kErrorLogFile, std::string(2 * 1024 * 1024 - 10, 'x'));
    append("Editor", "no driver");
    EXPECT_EQ(entriesIn(content()), 0);
    close(other);
}

}  // namespace
}  // namespace dovrel
