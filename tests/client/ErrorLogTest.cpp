#include "client/ErrorLog.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "platform/SystemException.h"
#include "settings/ConfigFileSystem.h"
#include "settings/LogFileReader.h"
#include "tests/client/SessionTest.h"
#include "tests/support/FileSizeLimit.h"

namespace dovrel {
namespace {

constexpr char kHead[] =
    "//POSDLLErrorLog\n//VERSION\nSTR:Dovrel Version n/a\n//ENCODING\nSTR:Bytes of applications, of the "
    "server "
    "and of paths are kept as they are, UTF-8 or Mac Roman. The library's own texts are Mac Roman.\n";
constexpr char kEntry[] =
    "\n//TIME\nSTR:2026-11-15T18:19:00Z\n//APPLICATION\nSTR:Editor\n//TYPE\nINT:24\n"
    "//TYPENAME\nSTR:class or driver not found\n//MESSAGE\nSTR:no driver\n";

class ErrorLogTest : public test::SystemRootTest {
  protected:
    ErrorLogTest() : log_([] { return std::time_t{1794766740}; }) {
        log_.setBundlePath("/Library/Application Support/Tessilor/pos/Nothing.bundle");
    }

    void append(const char* application, const char* message) const {
        append(FailureReport(std::make_unique<POSClassNotFoundException>(message), application), application);
    }
    void append(const FailureReport& report, const char* application = "Editor") const {
        log_.append(application, report, notes_);
    }

    /// The entries of the log's failures.
    std::vector<Properties> failures() const {
        std::vector<Properties> sections = ConfigFileSystem::readSections(content(), "TIME");
        sections.erase(sections.begin());
        return sections;
    }

    std::string logPath() const { return root_.path(kErrorLogFile); }
    std::string content() const { return root_.read(kErrorLogFile); }
    bool exists(const std::string& name) const { return access(root_.path(name).c_str(), F_OK) == 0; }

    static int entriesIn(const std::string& text) {
        int count = 0;
        for (size_t at = text.find(kEntry); at != std::string::npos; at = text.find(kEntry, at + 1))
            ++count;
        return count;
    }

    ErrorLog log_;
    FailureNotes notes_;
};

TEST_F(ErrorLogTest, FirstFailure_BringsTitleVersionAndEncoding) {
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry);
}

TEST_F(ErrorLogTest, FurtherFailures_AreAppended) {
    append("Editor", "no driver");
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry + kEntry);
}

TEST_F(ErrorLogTest, Entries_ReadBackAsSections) {
    append("Editor", "first line\nsecond line");
    append("Viewer", "other");
    const auto sections = ConfigFileSystem::readSections(content(), "TIME");
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[0].getString("VERSION"), "Dovrel Version n/a");
    EXPECT_EQ(sections[1].getString("APPLICATION"), "Editor");
    EXPECT_EQ(sections[1].getString("MESSAGE"), "first linechg-lfsecond line");
    EXPECT_EQ(sections[1].getInt("TYPE"), 24);
    EXPECT_EQ(sections[2].getString("APPLICATION"), "Viewer");
}

TEST_F(ErrorLogTest, Head_ReadsBackBehindItsTitle) {
    append("Editor", "no driver");
    std::string text = content();
    Properties store;
    LogFileReader::load(text, "POSDLLErrorLog", store, false);
    EXPECT_EQ(store.getString("VERSION"), "Dovrel Version n/a");
    EXPECT_NE(store.getString("ENCODING").find("UTF-8 or Mac Roman"), std::string::npos);
    EXPECT_EQ(LogFileReader::getText(store, "MESSAGE"), "no driver");
}

TEST_F(ErrorLogTest, BytesOfHostsAndServers_StayAsTheyAre) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '\n') bytes += static_cast<char>(byte);
    append(bytes.c_str(), bytes.c_str());
    EXPECT_NE(content().find("//APPLICATION\nSTR:" + bytes + "\n"), std::string::npos);
    EXPECT_NE(content().find("//MESSAGE\nSTR:" + bytes + "\n"), std::string::npos);
}

TEST_F(ErrorLogTest, ErrorSiteCode_IsTheDetail) {
    auto failure = std::make_unique<StructuredWriteFailedException>("1");
    failure->setDetail("384269E80230: ");
    append(FailureReport(std::move(failure), "Editor"));
    EXPECT_EQ(content().substr(content().find("//TYPE\n")),
              "//TYPE\nINT:5\n//TYPENAME\nSTR:data that do not fit into a block\n//MESSAGE\nSTR:1\n"
              "//DETAIL\nSTR:384269E80230: \n");
}

TEST_F(ErrorLogTest, StatusOfTheSystem_HasItsName) {
    append(FailureReport(std::make_unique<SystemException>("runInBackground", -29296), "Editor"));
    EXPECT_EQ(failures().at(0).getString("DETAIL"), "runInBackground");
    EXPECT_EQ(failures().at(0).getString("STATUS"), "-29296 (kMPTimeoutErr)");
}

TEST_F(ErrorLogTest, Notes_AreFurtherEntries) {
    FailureNotes::addRequest([] { return std::string("call method"); });
    FailureNotes::addServerError(27, "not used");
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string("launch: -10826"); });
    append("Editor", "no driver");
    EXPECT_EQ(content(), std::string(kHead) + kEntry +
                             "//REQUEST\nSTR:call method\n//SERVERERROR\nSTR:27 (method not found)\n"
                             "//FAILEDSTEP\nSTR:launch: -10826\n");
}

TEST_F(ErrorLogTest, FailureWithoutAnAlert_SaysSo) {
    FailureReport report(std::make_unique<POSClassNotFoundException>("no driver"), "Editor");
    report.isShown = false;
    append(report);
    EXPECT_EQ(content(), std::string(kHead) + kEntry + "//ALERT\nSTR:none\n");
}

TEST_F(ErrorLogTest, LineFeedsOfEveryText_ForgeNoEntry) {
    FailureNotes::addRequest([] { return std::string("a\n//TYPE\nINT:1"); });
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string("b\n//TIME\nSTR:1"); });
    auto failure = std::make_unique<POSClassNotFoundException>("c\n//TIME\nSTR:2");
    failure->setDetail("d\n//TIME\nSTR:3");
    append(FailureReport(std::move(failure), "Editor"), "e\n//TIME\nSTR:4");
    EXPECT_EQ(failures().size(), 1u);
    EXPECT_EQ(failures().at(0).getInt("TYPE"), 24);
}

TEST_F(ErrorLogTest, NewLog_IsOpenToAllUsers) {
    append("Editor", "no driver");
    struct stat status = {};
    ASSERT_EQ(stat(logPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0777u);
}

TEST_F(ErrorLogTest, LongTexts_AreCut) {
    append(std::string(100000, 'a').c_str(), std::string(100000, 'm').c_str());
    const auto sections = ConfigFileSystem::readSections(content(), "TIME");
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections[1].getString("APPLICATION"), std::string(16384, 'a'));
    EXPECT_EQ(sections[1].getString("MESSAGE"), std::string(16384, 'm'));
}

TEST_F(ErrorLogTest, LongDetailsAndNotes_AreCut) {
    FailureNotes::addRequest([] { return std::string(100000, 'r'); });
    FailureNotes::addFailedStep(TraceArea::kConnection, [] { return std::string(100000, 's'); });
    auto failure = std::make_unique<POSClassNotFoundException>("no driver");
    failure->setDetail(std::string(100000, 'd').c_str());
    append(FailureReport(std::move(failure), "Editor"));
    EXPECT_EQ(failures().at(0).getString("DETAIL"), std::string(16384, 'd'));
    EXPECT_EQ(failures().at(0).getString("REQUEST"), std::string(16384, 'r'));
    EXPECT_EQ(failures().at(0).getString("FAILEDSTEP"), std::string(16384, 's'));
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
    // Still a folder, and empty.
    ASSERT_EQ(rmdir(logPath().c_str()), 0);
    // Nobody reads from this pipe: opening or writing it must not block.
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

// Each process has the full log open when it finds it full; only one of them may rename it.
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
                // Ends for all of them at once, when the parent closes the pipe.
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

}  // namespace
}  // namespace dovrel
