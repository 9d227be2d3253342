// The messages that an alert receives, in their order. The class of the alerts is implemented here, so it records
// its messages and shows nothing.
#include "ui/alerts/ModalAlert.h"

#import <AppKit/AppKit.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dovrel::test {
namespace {

std::vector<std::string> alertCalls;
NSInteger pressedButton = 0;
BOOL hasWindowSystem = YES;

void record(const std::string& call) { alertCalls.push_back(call); }

void record(const std::string& call, NSString* text) { record(call + " " + [text UTF8String]); }

}  // namespace
}  // namespace dovrel::test

using dovrel::test::record;

@implementation DovrelPortabilityAlert

+ (id)alloc {
    record("alloc");
    return [super alloc];
}

- (id)init {
    record("init");
    return [super init];
}

- (void)dealloc {
    record("dealloc");
    [super dealloc];
}

- (void)addButtonWithTitle:(NSString*)title {
    record("button", title);
}

- (void)setMessageText:(NSString*)text {
    record("message text", text);
}

- (void)setInformativeText:(NSString*)text {
    record("informative text", text);
}

- (void)setAlertStyle:(NSAlertStyle)style {
    record("style " + std::to_string(style));
}

- (void)setShowsHelp:(BOOL)showsHelp {
    record(showsHelp ? "help" : "no help");
}

- (void)setDelegate:(id)delegate {
    static_cast<void>(delegate);
}

- (NSInteger)runModal {
    record("runModal");
    return dovrel::test::pressedButton;
}

@end

BOOL NSApplicationLoad() {
    record("NSApplicationLoad");
    return dovrel::test::hasWindowSystem;
}

namespace dovrel {
namespace {

using test::alertCalls;
using testing::ElementsAre;

class ModalAlertTest : public testing::Test {
   protected:
    void SetUp() override {
        alertCalls.clear();
        test::pressedButton = 1000;
        test::hasWindowSystem = YES;
    }
};

TEST_F(ModalAlertTest, WithTwoButtonsAndHelp_SendsEveryMessageOnceInOrder) {
    bool pressedFirst = false;
    EXPECT_TRUE(runModalAlert({"A title", "A body", "Retry", "Cancel", [] {}}, &pressedFirst));
    EXPECT_THAT(alertCalls, ElementsAre("alloc", "init", "NSApplicationLoad", "button Retry", "button Cancel",
                                        "help", "message text A title", "informative text A body", "style 0",
                                        "runModal", "dealloc"));
    EXPECT_TRUE(pressedFirst);
}

TEST_F(ModalAlertTest, WithOneButton_SendsNoMessageForASecondOneOrForHelp) {
    test::pressedButton = 1001;
    bool pressedFirst = true;
    EXPECT_TRUE(runModalAlert({"A title", "A body", "OK", nullptr, nullptr}, &pressedFirst));
    EXPECT_THAT(alertCalls,
                ElementsAre("alloc", "init", "NSApplicationLoad", "button OK", "message text A title",
                            "informative text A body", "style 0", "runModal", "dealloc"));
    EXPECT_FALSE(pressedFirst);
}

TEST_F(ModalAlertTest, WithoutAWindowSystem_SendsNoMessageToTheAlert) {
    test::hasWindowSystem = NO;
    bool pressedFirst = false;
    EXPECT_FALSE(runModalAlert({"A title", "A body", "OK", nullptr, nullptr}, &pressedFirst));
    EXPECT_THAT(alertCalls, ElementsAre("alloc", "init", "NSApplicationLoad", "dealloc"));
}

}  // namespace
}  // namespace dovrel
