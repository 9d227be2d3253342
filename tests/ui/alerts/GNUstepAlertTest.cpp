// The alert's source with a second implementation of the platform's classes: GNUstep's, in real windows.
#include <algorithm>

#include "tests/ui/alerts/AlertTest.h"

namespace dovrel {
namespace {

class GNUstepAlertTest : public test::AlertTest {
  protected:
    GNUstepAlertTest() : AlertTest(test::gnustepAlerts()) {}

    /// Shows an alert. Returns its content as the host reports it, sorted.
    std::vector<std::string> showContent(const std::string& kind, const std::string& title,
                                         const std::string& body) {
        startProgram({DOVREL_GNUSTEP_ALERT_HOST, kind, title, body});
        std::vector<std::string> content;
        for (std::string line = host_->readLine(); !line.empty() && line != "end"; line = host_->readLine())
            content.push_back(line);
        std::sort(content.begin(), content.end());
        return content;
    }

    std::vector<std::string> showContent(const std::string& kind) {
        return showContent(kind, "Title", "Body");
    }
};

TEST_F(GNUstepAlertTest, Alert_HoldsTitleBodyAndTheCaptionsOfItsKind) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(showContent("0"), (Lines{"button Fine", "text Body", "text Title"}));
    EXPECT_TRUE(desktop_.takePicture("alert-gnustep"));
    EXPECT_EQ(showContent("1"), (Lines{"button Fine", "button Never mind", "text Body", "text Title"}));
    EXPECT_EQ(showContent("2"), (Lines{"button Never mind", "button Once more", "text Body", "text Title"}));
    EXPECT_EQ(showContent("7"), (Lines{"button Fine", "text Body", "text Title"}));
}

TEST_F(GNUstepAlertTest, CarriageReturns_AreLineBreaks) {
    const auto content = showContent("0", "Title", "One line\rand another\r\r100 % of \"it\"");
    EXPECT_NE(std::find(content.begin(), content.end(), "text One line|and another||100 % of \"it\""),
              content.end())
        << testing::PrintToString(content);
}

TEST_F(GNUstepAlertTest, TheFirstButton_ReturnsRetryOrOK) {
    showContent("2");
    EXPECT_EQ(lineAfterClick(0), "answer 11");
    showContent("0");
    EXPECT_EQ(lineAfterClick(0), "answer 12");
    showContent("1");
    EXPECT_EQ(lineAfterKey("Return"), "answer 12");
}

TEST_F(GNUstepAlertTest, TheSecondButton_ReturnsCancel) {
    showContent("2");
    EXPECT_EQ(lineAfterClick(1), "answer 13");
    showContent("1");
    EXPECT_EQ(lineAfterClick(1), "answer 13");
}

}  // namespace
}  // namespace dovrel
