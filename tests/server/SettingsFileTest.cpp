#include "server/SettingsFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/server/FakeProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

class SettingsFileTest : public testing::Test {
  protected:
    // Returns the log, without the time at the beginning of each line.
    std::vector<std::string> notesAfterReading() {
        readSettingsFile(folder_.path("Merrowd.conf"), control_);
        std::vector<std::string> notes;
        if (access(folder_.path("Merrowd.log").c_str(), F_OK) != 0) return notes;
        std::istringstream lines(folder_.read("Merrowd.log"));
        for (std::string line; std::getline(lines, line);)
            notes.push_back(line.substr(std::string("2026-11-15 18:19:00.123 ").size()));
        return notes;
    }

    using Notes = std::vector<std::string>;

    const dovrel::test::TemporaryFolder folder_;
    FakeProcess process_;
    ServerState state_{1};
    ExchangeLog log_{folder_.path("Merrowd.log")};
    ControlCalls control_{state_, process_, log_};
};

TEST_F(SettingsFileTest, FileThatIsUnderstood_IsAppliedSilently) {
    folder_.write("Merrowd.conf", "//checkClasses\nINT:1\n");
    EXPECT_EQ(notesAfterReading(), Notes());
    EXPECT_TRUE(state_.settings.checkClasses);
}

TEST_F(SettingsFileTest, NoFile_IsNotAProblem) {
    EXPECT_EQ(notesAfterReading(), Notes());
}

TEST_F(SettingsFileTest, LinesThatAreNotUnderstood_AreEachALineInTheLog) {
    folder_.write("Merrowd.conf", "checkClasses=1\n//log\n//Log\nINT:1\n//delay\nINT:2\n");
    const std::string place = "settings: " + folder_.path("Merrowd.conf") + ": ";
    EXPECT_EQ(notesAfterReading(),
              (Notes{place + "line 1: \"checkClasses=1\" is not part of an entry",
                     place + "line 2: \"log\" has no value", place + "line 3: there is no setting \"Log\""}));
    EXPECT_EQ(state_.settings.misbehaviour.delay, std::chrono::milliseconds(2));
    ASSERT_EQ(control_.startProblems().size(), 3u);
    EXPECT_EQ("settings: " + control_.startProblems()[1], place + "line 2: \"log\" has no value");
}

TEST_F(SettingsFileTest, ZeroByte_IsAProblem) {
    folder_.write("Merrowd.conf", std::string("//checkClasses\nINT:1\n\0//log\nINT:1\n", 34));
    EXPECT_EQ(notesAfterReading(), (Notes{"settings: " + folder_.path("Merrowd.conf") +
                                          ": line 3: what follows its zero byte does not count"}));
    EXPECT_TRUE(state_.settings.checkClasses);
    EXPECT_FALSE(state_.settings.log);
}

TEST_F(SettingsFileTest, FileThatCannotBeRead_IsAProblem) {
    std::filesystem::create_directory(folder_.path("Merrowd.conf"));
    EXPECT_EQ(notesAfterReading(),
              (Notes{"settings: Could not open file for reading: " + folder_.path("Merrowd.conf")}));
}

}  // namespace
}  // namespace merrowd::test
