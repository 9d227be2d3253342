// The texts of an alert, in UTF-8 or in Mac Roman, as people read them: in a window, and in the system log
// where there is no window.
#include <algorithm>
#include <cstdlib>

#include "tests/ui/AlertTest.h"
#include "ui/MacOSXMessageDialog.h"

namespace dovrel {
namespace {

constexpr char kMacRomanName[] =
    "Gr\x9A\xA7"
    "enpr\x9F"
    "fer";
constexpr char kUTF8Name[] = "Größenprüfer";

class ReadableAlertTest : public test::AlertTest {
  protected:
    /// What the host finds in the open alert: "text ..." and "button ..." for each.
    std::vector<std::string> contentOf(const std::string& title, const std::string& body) {
        start({"inspect", "2", title, body});
        std::vector<std::string> content;
        for (std::string line = host_->readLine(); !line.empty() && line != "end"; line = host_->readLine())
            content.push_back(line);
        return content;
    }

    static void expectLine(const std::vector<std::string>& content, const std::string& line) {
        EXPECT_EQ(std::count(content.begin(), content.end(), line), 1)
            << line << " in " << testing::PrintToString(content);
    }

    void installCaptions(const std::string& retry, const std::string& cancel) {
        root_.write(
            "Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/"
            "MultiLanguageTexts.mls",
            "//LANGUAGE\nSTR:English\n//GENERAL_BUTTON_RETRY\nSTR:" + retry +
                "\n//GENERAL_BUTTON_CANCEL\nSTR:" + cancel + "\n");
    }
};

TEST_F(ReadableAlertTest, TitleAndBodyInUTF8_AreReadable) {
    const auto content = contentOf("Prüfung", std::string("\"") + kUTF8Name + "\", 日本");
    expectLine(content, "text Prüfung");
    expectLine(content, "text \"Größenprüfer\", 日本");
    EXPECT_EQ(lineAfterClick(0), "answer 11");
}

TEST_F(ReadableAlertTest, TitleAndBodyInMacRoman_AreReadable) {
    const auto content = contentOf(
        "Pr\x9F"
        "fung",
        kMacRomanName);
    expectLine(content, "text Prüfung");
    expectLine(content, "text Größenprüfer");
    EXPECT_EQ(lineAfterClick(0), "answer 11");
}

TEST_F(ReadableAlertTest, BodyInBothEncodings_IsReadable) {
    const auto content = contentOf("Title", std::string(kUTF8Name) + ": " + kMacRomanName);
    expectLine(content, "text Größenprüfer: Größenprüfer");
    EXPECT_EQ(lineAfterClick(0), "answer 11");
}

TEST_F(ReadableAlertTest, CaptionsInEitherEncoding_AreReadable) {
    installCaptions(
        "R\x8E"
        "essayer",
        "Zurück");
    const auto content = contentOf("Title", "Body");
    expectLine(content, "button Réessayer");
    expectLine(content, "button Zurück");
    EXPECT_EQ(lineAfterClick(0), "answer 11");
}

/// A process without a window system.
class ReadableUnshownAlertTest : public testing::Test {
  protected:
    ReadableUnshownAlertTest() {
        setenv("HOME", home_.path().c_str(), 1);
        unsetenv("DISPLAY");
    }

    /// The system log's entry about an alert with that body.
    static std::string logOf(const std::string& body) {
        testing::internal::CaptureStderr();
        MacOSXMessageDialog().showAlert("Title", body.c_str());
        return testing::internal::GetCapturedStderr();
    }

    static void expectQuoted(const std::string& body, const std::string& quoted) {
        const std::string log = logOf(body);
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

// Foundation chooses its encoding by what the process was started with.
TEST_F(ReadableUnshownAlertTest, HostWhoseEnvironmentIsNotUTF8_LogsInUTF8AllTheSame) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process that is started with this environment
    setenv("FILE_OF_THE_USER",
           "Gr\xF6\xDF"
           "e",
           1);
    const auto showAndEnd = [] {
        MacOSXMessageDialog().showAlert("Title", kMacRomanName);
        std::_Exit(0);
    };
    EXPECT_EXIT(showAndEnd(), testing::ExitedWithCode(0), "\"Größenprüfer\"\n");
}

}  // namespace
}  // namespace dovrel
