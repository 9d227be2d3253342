#include "server/ExchangeLog.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <sstream>

#include "tests/server/Requests.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

using dovrel::test::TemporaryFolder;

// Removes the time from the beginning of each line: "2026-11-15 18:19:00.123 #1 ..." becomes "at #1 ...".
std::string withoutTimes(const std::string& text) {
    const std::string pattern = "0000-00-00 00:00:00.000 ";
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        std::string start = line.substr(0, pattern.size());
        for (char& character : start) {
            if (character >= '0' && character <= '9') character = '0';
        }
        result += (start == pattern ? "at " + line.substr(pattern.size()) : line) + "\n";
    }
    return result;
}

mode_t readPermissions(const std::string& path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

TEST(ExchangeLog, WithoutALine_MakesNoFile) {
    const TemporaryFolder folder;
    const ExchangeLog log(folder.path("Merrowd.log"));
    EXPECT_NE(access(folder.path("Merrowd.log").c_str(), F_OK), 0);
}

TEST(ExchangeLog, ANote_IsOneLineWithTheTime) {
    const TemporaryFolder folder;
    ExchangeLog log(folder.path("Merrowd.log"));
    log.note("one\ntwo");
    EXPECT_EQ(withoutTimes(folder.read("Merrowd.log")), "at one two\n");
}

TEST(ExchangeLog, ANoteInUTF8OrMacRoman_IsUTF8) {
    const TemporaryFolder folder;
    ExchangeLog log(folder.path("Merrowd.log"));
    log.note(
        "there is no setting \"Gr\x9A\xA7"
        "e\" or \"Größe\"");
    EXPECT_EQ(withoutTimes(folder.read("Merrowd.log")), "at there is no setting \"Größe\" or \"Größe\"\n");
}

TEST(ExchangeLog, RequestAndReply_HaveTheSameNumber) {
    const TemporaryFolder folder;
    ExchangeLog log(folder.path("Merrowd.log"));
    for (int i = 0; i < 2; ++i) {
        log.request("get information", informationRequest(1, "x").bytes());
        log.reply("answered", RequestHandler::makeExceptionReply(16, {30, "No."})->bytes());
    }
    const std::string request =
        " get information\n"
        "    > 103 session identifier = 1\n"
        "    > 108 information request = 1 byte: 78 \"x\"\n";
    const std::string reply =
        " answered\n"
        "    < 150 exception text = \"No.\"\n"
        "    < 151 exception code = 30\n";
    EXPECT_EQ(withoutTimes(folder.read("Merrowd.log")),
              "at #1" + request + "at #1" + reply + "at #2" + request + "at #2" + reply);
}

TEST(ExchangeLog, ASecondLogOfTheSameFile_AddsItsLines) {
    const TemporaryFolder folder;
    folder.write("Merrowd.log", "before\n");
    ExchangeLog(folder.path("Merrowd.log")).note("after");
    EXPECT_EQ(folder.read("Merrowd.log").substr(0, 7), "before\n");
}

TEST(ExchangeLog, ANewFile_IsOpenToAllUsersWhateverTheUmask) {
    const TemporaryFolder folder;
    const mode_t before = umask(077);
    ExchangeLog(folder.path("Merrowd.log")).note("line");
    umask(before);
    EXPECT_EQ(readPermissions(folder.path("Merrowd.log")), 0666u);
}

TEST(ExchangeLog, AFileWithLines_KeepsItsPermissions) {
    const TemporaryFolder folder;
    folder.write("Merrowd.log", "before\n");
    ASSERT_EQ(chmod(folder.path("Merrowd.log").c_str(), 0640), 0);
    ExchangeLog(folder.path("Merrowd.log")).note("after");
    EXPECT_EQ(readPermissions(folder.path("Merrowd.log")), 0640u);
}

TEST(ExchangeLog, ALinkInPlaceOfTheFile_IsNotFollowed) {
    const TemporaryFolder folder;
    folder.write("precious", "content");
    ASSERT_EQ(symlink(folder.path("precious").c_str(), folder.path("Merrowd.log").c_str()), 0);
    testing::internal::CaptureStderr();
    ExchangeLog(folder.path("Merrowd.log")).note("line");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("line\n"), std::string::npos);
    EXPECT_EQ(folder.read("precious"), "content");
}

TEST(ExchangeLog, APipeInPlaceOfTheFile_DoesNotBlockAndSendsTheLinesToStandardError) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.path("Merrowd.log").c_str(), 0666), 0);
    for (const bool hasReader : {false, true}) {
        const int reader = hasReader ? open(folder.path("Merrowd.log").c_str(), O_RDONLY | O_NONBLOCK) : -1;
        testing::internal::CaptureStderr();
        ExchangeLog(folder.path("Merrowd.log")).note("line");
        EXPECT_NE(testing::internal::GetCapturedStderr().find("line\n"), std::string::npos);
        if (reader >= 0) close(reader);
    }
}

TEST(ExchangeLog, AFolderThatIsNotThere_SendsTheLinesToStandardError) {
    testing::internal::CaptureStderr();
    ExchangeLog log("/nowhere/at/all/Merrowd.log");
    log.note("one");
    log.note("two");
    const std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_NE(shown.find("one\n"), std::string::npos);
    EXPECT_NE(shown.find("two\n"), std::string::npos);
}

}  // namespace
}  // namespace merrowd::test
