// A refused registration, decided by a user at real alerts.
#include "tests/ui/AlertTest.h"

namespace dovrel {
namespace {

// Buttons, counted from the right.
constexpr int kRetry = 0;
constexpr int kCancel = 1;

class RegistrationAlertTest : public test::AlertTest {
  protected:
    RegistrationAlertTest() { startProgram({DOVREL_REGISTRATION_HOST}); }
};

TEST_F(RegistrationAlertTest, RetryUntilItIsAccepted_Registers) {
    EXPECT_EQ(lineAfterClick(kRetry), "answer 11");
    EXPECT_EQ(lineAfterClick(kRetry), "answer 11");
    EXPECT_EQ(host_->readLine(), "0 after 3");
    EXPECT_EQ(host_->wait(), 0);
}

TEST_F(RegistrationAlertTest, CancelThenRetryAtTheSecondQuestion_TriesAgain) {
    EXPECT_EQ(lineAfterClick(kCancel), "answer 13");
    EXPECT_EQ(lineAfterClick(kRetry), "answer 11");
    EXPECT_EQ(lineAfterClick(kCancel), "answer 13");
    EXPECT_EQ(lineAfterClick(kCancel), "answer 13");
    EXPECT_EQ(host_->readLine(), "80000008 after 2");
    EXPECT_EQ(host_->wait(), 0);
}

}  // namespace
}  // namespace dovrel
