// How long a helper may take until its alert is on the screen.
#include "portability/alerts/AlertConversation.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <thread>

#include "tests/support/FakeAlertHelper.h"
#include "tests/support/VariableChange.h"

using namespace dovrel::test;
using namespace portability;

namespace {

constexpr long kOneTick = 1;

AlertRequest request(const std::string& body = "B") {
    return {"T", body, {"OK"}, false, getpid()};
}

class AlertConversationTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
    // DISPLAY only needs a value, because the helper of these tests opens no window.
    VariableChange display_{"DISPLAY", ":1"};
    VariableChange alerts_{"POS_ALERTS", nullptr};
    FakeAlertHelper helper_;
};

}  // namespace

TEST_F(AlertConversationTest, Next_AHelperThatDoesNotShowTheAlertInTime_IsGivenUpAndItsStreamClosed) {
    helper_.follow({"wait"});
    {
        AlertConversation conversation(request(), kOneTick);
        EXPECT_EQ(conversation.next(), std::nullopt);
    }
    EXPECT_TRUE(helper_.sawItsEnd());
}

TEST_F(AlertConversationTest, Next_AHelperThatDoesNotReadTheRequestInTime_IsGivenUp) {
    helper_.follow({"wait"});
    FakeAlertHelper::beDeaf();
    const std::string moreThanASocketHolds(kLongestAlertBody, '\x01');
    AlertConversation conversation(request(moreThanASocketHolds), kOneTick);
    EXPECT_EQ(conversation.next(), std::nullopt);
}

TEST_F(AlertConversationTest, Next_OnceTheAlertIsShown_TheUserMayTakeAnyTime) {
    constexpr long kTicks = 120;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(kTicks / 60);
    const std::string sign = folder_.path("sign");
    helper_.follow({kShownEvent, "until " + sign, pressedEvent(0)});
    AlertConversation conversation(request(), kTicks);
    ASSERT_EQ(conversation.next()->kind, AlertEvent::Kind::shown);
    std::this_thread::sleep_until(limit);
    auto user = std::async(std::launch::async, [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        folder_.write("sign", "");
    });
    const auto event = conversation.next();
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->kind, AlertEvent::Kind::pressed);
}
