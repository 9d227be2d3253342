// The texts of an alert, given in UTF-8 or in Mac Roman, as people read them: in the request to the alert
// helper, and in the system log if there is no window.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "settings/MultiLanguageSupport.h"
#include "tests/support/FakeAlertHelper.h"
#include "tests/support/TemporaryFolder.h"
#include "ui/alerts/MacOSXMessageDialog.h"

namespace dovrel {
namespace {

constexpr char kMacRomanName[] =
    "Gr\x9A\xA7"
    "enpr\x9F"
    "fer";
constexpr char kUTF8Name[] = "Größenprüfer";

/// The helper follows the test's commands, so there are no windows.
class ReadableAlertTest : public testing::Test {
  protected:
    ReadableAlertTest() {
        setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
        setenv("HOME", root_.path().c_str(), 1);
        setenv("DISPLAY", ":1", 1);
        for (const char* variable : {"LANG", "LC_ALL", "LC_MESSAGES", "POS_ALERTS", "WAYLAND_DISPLAY"})
            unsetenv(variable);
    }

    /// Returns the request that the helper received.
    nlohmann::json makeRequest(const std::string& title, const std::string& body) {
        MultiLanguageSupport::initialize("English");
        helper_.follow({test::kShownEvent, test::pressedEvent(0)});
        MacOSXMessageDialog().showAlert(title.c_str(), body.c_str(), kAlertButtonsRetryCancel, 0);
        return nlohmann::json::parse(helper_.note("request"));
    }

    void installCaptions(const std::string& retry, const std::string& cancel) {
        root_.write(
            "Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/"
            "MultiLanguageTexts.mls",
            "//LANGUAGE\nSTR:English\n//GENERAL_BUTTON_RETRY\nSTR:" + retry +
                "\n//GENERAL_BUTTON_CANCEL\nSTR:" + cancel + "\n");
    }

    test::TemporaryFolder root_;
    test::FakeAlertHelper helper_;
};

TEST_F(ReadableAlertTest, TitleAndBodyInUTF8_AreReadable) {
    const auto request = makeRequest("Prüfung", std::string("\"") + kUTF8Name + "\", 日本");
    EXPECT_EQ(request["title"], "Prüfung");
    EXPECT_EQ(request["body"], "\"Größenprüfer\", 日本");
}

TEST_F(ReadableAlertTest, TitleAndBodyInMacRoman_AreReadable) {
    const auto request = makeRequest(
        "Pr\x9F"
        "fung",
        kMacRomanName);
    EXPECT_EQ(request["title"], "Prüfung");
    EXPECT_EQ(request["body"], "Größenprüfer");
}

TEST_F(ReadableAlertTest, BodyInBothEncodings_IsReadable) {
    const auto request = makeRequest("Title", std::string(kUTF8Name) + ": " + kMacRomanName);
    EXPECT_EQ(request["body"], "Größenprüfer: Größenprüfer");
}

TEST_F(ReadableAlertTest, CaptionsInEitherEncoding_AreReadable) {
    installCaptions(
        "R\x8E"
        "essayer",
        "Zurück");
    const auto request = makeRequest("Title", "Body");
    EXPECT_EQ(request["buttons"], (std::vector<std::string>{"Réessayer", "Zurück"}));
}

/// A process without a window system.
class ReadableUnshownAlertTest : public testing::Test {
  protected:
    ReadableUnshownAlertTest() {
        setenv("HOME", home_.path().c_str(), 1);
        unsetenv("DISPLAY");
    }

    /// Returns the system log's entry for an alert with that body.
    static std::string captureLog(const std::string& body) {
        testing::internal::CaptureStderr();
        MacOSXMessageDialog().showAlert("Title", body.c_str());
        return testing::internal::GetCapturedStderr();
    }

    static void expectQuoted(const std::string& body, const std::string& quoted) {
        const std::string log = captureLog(body);
        EXPECT_NE(log.find("message of the failed dialogue:  \n \"" + quoted + "\"\n"), std::string::npos)
            << log;
    }

    test::TemporaryFolder home_;
};

TEST_F(ReadableUnshownAlertTest, BodyInUTF8_IsLoggedInUTF8) {
    expectQuoted(kUTF8Name, "Größenprüfer");
}

TEST_F(ReadableUnshownAlertTest, BodyInMacRoman_IsLoggedInUTF8) {
    expectQuoted(kMacRomanName, "Größenprüfer");
}

TEST_F(ReadableUnshownAlertTest, BodyWithCarriageReturns_IsLoggedWithLineFeeds) {
    expectQuoted("One line\rand another\r\rand a last one", "One line\nand another\n\nand a last one");
}

TEST_F(ReadableUnshownAlertTest, BodyWithTheLogsOwnPlaceholder_IsLoggedAsItIs) {
    expectQuoted("100 %s, %@ and %n", "100 %s, %@ and %n");
}

// Foundation chooses its encoding by the environment at the start of the process.
TEST_F(ReadableUnshownAlertTest, HostWhoseEnvironmentIsNotUTF8_StillLogsInUTF8) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // so that the process starts with this environment
    setenv("FILE_OF_THE_USER",
           "Gr\xF6\xDF"
           "e",
           1);
    // The process begins the test anew, with a folder of its own.
    const auto showAndEnd = [this] {
        MacOSXMessageDialog().showAlert("Title", kMacRomanName);
        std::filesystem::remove_all(home_.path(""));
        std::_Exit(0);
    };
    EXPECT_EXIT(showAndEnd(), testing::ExitedWithCode(0), "\"Größenprüfer\"\n");
}

}  // namespace
}  // namespace dovrel
