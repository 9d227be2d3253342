#include "platform/files/SuccessorFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/ExtendedAttributes.h"
#include "tests/support/NeedsRoot.h"
#include "tests/support/OrdinaryUser.h"

// The linker redirects the program's calls of rename and dup, so that a test can act right after or before
// one, or let one fail.
static std::function<void()> afterNextRename;
static int errorOfNextRename = 0;
static std::function<void()> beforeNextDup;
extern "C" {
int __real_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to);
int __real_dup(int descriptor);
int __wrap_dup(int descriptor);
}
int __wrap_dup(int descriptor) {
    if (beforeNextDup) std::exchange(beforeNextDup, nullptr)();
    return __real_dup(descriptor);
}
int __wrap_rename(const char* from, const char* to) {
    if (errorOfNextRename != 0) {
        errno = std::exchange(errorOfNextRename, 0);
        return -1;
    }
    const int result = __real_rename(from, to);
    if (afterNextRename) std::exchange(afterNextRename, nullptr)();
    return result;
}

namespace dovrel {
namespace {

using Outcome = SuccessorFile::Outcome;
using test::ScratchFolder;

constexpr unsigned kUnfinished = 0200;

// A process that locks a file, as a writer does, until the process is killed.
class LivingWriter {
  public:
    explicit LivingWriter(const std::string& path) {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        process_ = fork();
        if (process_ == 0) {
            const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, kUnfinished);
            const bool isLocked = flock(file, LOCK_EX | LOCK_NB) == 0 && write(file, "half", 4) == 4;
            _exit(isLocked && write(ready[1], "", 1) == 1 ? pause() : 1);
        }
        close(ready[1]);
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1) << "the writer has not begun";
        close(ready[0]);
    }
    ~LivingWriter() { end(); }
    LivingWriter(const LivingWriter&) = delete;
    LivingWriter& operator=(const LivingWriter&) = delete;

    void end() {
        if (process_ <= 0) return;
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
        process_ = -1;
    }

  private:
    pid_t process_ = -1;
};

class Successor : public testing::Test {
  protected:
    Outcome replace(const std::string& text) const {
        struct stat old {};
        EXPECT_EQ(stat(path_.c_str(), &old), 0);
        return SuccessorFile::replace(path_, old, text);
    }

    bool exists(const std::string& name) const {
        return std::filesystem::symlink_status(folder_.path(name)).type() !=
               std::filesystem::file_type::not_found;
    }

    // Runs a writer with this umask in a process that is killed when it has written the second file.
    void killWriterInTheMiddle(mode_t mask) const {
        const pid_t writer = fork();
        if (writer == 0) {
            umask(mask);
            beforeNextDup = [] { raise(SIGKILL); };
            replace(std::string(10'000, 'n'));
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(writer, &status, 0), writer);
        ASSERT_TRUE(WIFSIGNALED(status));
    }

    void writeLeftover(const std::string& name) const {
        ScratchFolder::setPermissions(folder_.write(name, "half"), kUnfinished);
    }

    const ScratchFolder folder_;
    const std::string path_ = folder_.write("file", "old");
};

TEST_F(Successor, Replace_ExchangesTheFileAndLeavesNothingBesideIt) {
    struct stat before {};
    struct stat after {};
    ScratchFolder::setPermissions(path_, 0664);
    ASSERT_EQ(stat(path_.c_str(), &before), 0);
    EXPECT_EQ(replace("new"), Outcome::kReplaced);
    ASSERT_EQ(stat(path_.c_str(), &after), 0);
    EXPECT_NE(before.st_ino, after.st_ino);
    EXPECT_EQ(before.st_mode, after.st_mode);
    EXPECT_EQ(ScratchFolder::readFile(path_), "new");
    EXPECT_FALSE(exists("file.new0"));
}

TEST_F(Successor, Replace_WhereNewFilesInheritAnAccessControlList_IsRefused) {
    SET_ATTRIBUTE_OR_SKIP(folder_.path(), test::kDefaultAccessList, test::sharedAccessList());
    EXPECT_EQ(replace("new"), Outcome::kRefused);
    EXPECT_EQ(ScratchFolder::readFile(path_), "old");
    EXPECT_FALSE(exists("file.new0"));
}

TEST_F(Successor, Replace_WhereTheExchangeFails_LeavesOnlyTheOldFile) {
    for (const int error : {ENOSPC, EACCES}) {
        errorOfNextRename = error;
        EXPECT_EQ(replace("new"), error == ENOSPC ? Outcome::kFailed : Outcome::kRefused);
        EXPECT_EQ(ScratchFolder::readFile(path_), "old");
        EXPECT_FALSE(exists("file.new0"));
    }
}

TEST_F(Successor, Replace_WithEveryNameTaken_IsRefusedAndLeavesThem) {
    for (int number = 0; number < 10; ++number)
        folder_.write("file.new" + std::to_string(number), "taken");
    EXPECT_EQ(replace("new"), Outcome::kRefused);
    EXPECT_EQ(ScratchFolder::readFile(folder_.path("file.new9")), "taken");
}

TEST_F(Successor, Replace_BesideALivingWriter_TakesTheNextName) {
    const LivingWriter writer(folder_.path("file.new0"));
    EXPECT_EQ(replace("new"), Outcome::kReplaced);
    EXPECT_EQ(std::filesystem::file_size(folder_.path("file.new0")), 4u);
    EXPECT_FALSE(exists("file.new1"));
}

TEST_F(Successor, Replace_WhenAnotherWriterTakesTheFreedName_LeavesItsFile) {
    afterNextRename = [this] { folder_.write("file.new0", "of another writer"); };
    EXPECT_EQ(replace("new"), Outcome::kReplaced);
    EXPECT_EQ(ScratchFolder::readFile(path_), "new");
    EXPECT_EQ(ScratchFolder::readFile(folder_.path("file.new0")), "of another writer");
}

TEST_F(Successor, RemoveLeftovers_LeavesTheFileOfALivingWriterAndDeletesThatOfAKilledOne) {
    LivingWriter writer(folder_.path("file.new0"));
    SuccessorFile::removeLeftovers(path_);
    EXPECT_TRUE(exists("file.new0"));
    writer.end();
    SuccessorFile::removeLeftovers(path_);
    EXPECT_FALSE(exists("file.new0"));
    EXPECT_EQ(ScratchFolder::readFile(path_), "old");
}

TEST_F(Successor, RemoveLeftovers_DeletesThoseAfterAFreeName) {
    writeLeftover("file.new1");
    writeLeftover("file.new9");
    SuccessorFile::removeLeftovers(path_);
    EXPECT_FALSE(exists("file.new1"));
    EXPECT_FALSE(exists("file.new9"));
}

TEST_F(Successor, RemoveLeftovers_LeavesEverythingElseOfSuchNames) {
    const std::string target = folder_.write("target", "content");
    std::filesystem::create_symlink(target, folder_.path("file.new0"));
    std::filesystem::create_directory(folder_.path("file.new1"));
    ASSERT_EQ(mkfifo(folder_.path("file.new2").c_str(), 0600), 0);
    folder_.write("file.new", "content");
    folder_.write("file.new10", "content");
    folder_.write("other.new0", "content");
    SuccessorFile::removeLeftovers(path_);
    for (const char* const name :
         {"target", "file.new0", "file.new1", "file.new2", "file.new", "file.new10", "other.new0"})
        EXPECT_TRUE(exists(name)) << name;
}

TEST_F(Successor, RemoveLeftovers_LeavesFilesOfUsersWhateverTheirPermissions) {
    for (const unsigned mode : {0644u, 0600u, 0400u, 0222u, 0700u, 0u, 04200u}) {
        ScratchFolder::setPermissions(folder_.write("file.new7", "content"), mode);
        SuccessorFile::removeLeftovers(path_);
        ASSERT_TRUE(exists("file.new7")) << std::oct << mode;
        std::filesystem::remove(folder_.path("file.new7"));
    }
}

TEST_F(Successor, RemoveLeftovers_LeavesFilesOfAnotherUserAndFilesWithTwoNames) {
    NEEDS_ROOT("give a file to another user");
    writeLeftover("file.new0");
    ASSERT_EQ(chown(folder_.path("file.new0").c_str(), 1234, 1234), 0);
    writeLeftover("linked");
    std::filesystem::create_hard_link(folder_.path("linked"), folder_.path("file.new1"));
    SuccessorFile::removeLeftovers(path_);
    EXPECT_TRUE(exists("file.new0"));
    EXPECT_TRUE(exists("file.new1"));
}

TEST_F(Successor, RemoveLeftovers_OfAnOrdinaryUserDeletesWhatThatUsersWriterLeft) {
    ScratchFolder::setPermissions(folder_.path(), 0777);
    EXPECT_TRUE(holdsForOrdinaryUser([&] {
        LivingWriter writer(folder_.path("file.new0"));
        writer.end();
        SuccessorFile::removeLeftovers(path_);
        return !exists("file.new0");
    }));
}

// The system kills the writer in the middle of its content.
TEST_F(Successor, Replace_OfAWriterThatIsKilled_LeavesWhatTheNextOneDeletes) {
    for (const mode_t mask : {022u, 0777u}) {
        killWriterInTheMiddle(mask);
        EXPECT_EQ(ScratchFolder::readFile(path_), "old");
        ASSERT_TRUE(exists("file.new0"));
        EXPECT_EQ(ScratchFolder::readPermissions(folder_.path("file.new0")), kUnfinished) << "umask " << mask;
        SuccessorFile::removeLeftovers(path_);
        EXPECT_FALSE(exists("file.new0"));
    }
}

TEST_F(Successor, ManyWritersAtOnce_AllReplaceTheFileAndNoneLosesItsOwn) {
    constexpr int kWriters = 4;
    constexpr int kWrites = 100;
    std::atomic<int> failures{0};
    std::vector<std::thread> writers;
    for (int writer = 0; writer < kWriters; ++writer) {
        writers.emplace_back([&, text = std::string(10'000, static_cast<char>('a' + writer))] {
            for (int write = 0; write < kWrites; ++write) {
                SuccessorFile::removeLeftovers(path_);
                if (replace(text) != Outcome::kReplaced) ++failures;
            }
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(failures, 0);
    const std::string content = ScratchFolder::readFile(path_);
    EXPECT_EQ(content, std::string(10'000, content.at(0)));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
}

TEST_F(Successor, HasExtendedAttributes_ReturnsWhetherThereAreAny) {
    EXPECT_FALSE(hasExtendedAttributes(path_));
    SET_ATTRIBUTE_OR_SKIP(path_, "user.origin", "here");
    EXPECT_TRUE(hasExtendedAttributes(path_));
}

}  // namespace
}  // namespace dovrel
