#include "ui/alerts/ModalAlert.h"

#import <AppKit/AppKit.h>

// Opens the help pages when the user presses the Help button of an alert.
@interface DovrelAlertHelp : NSObject {
   @private
    void (*openHelp_)(void);
}
- (void)setFunction:(void (*)(void))openHelp;
- (BOOL)alertShowHelp:(NSAlert*)alert;
@end

@implementation DovrelAlertHelp

- (void)setFunction:(void (*)(void))openHelp {
    openHelp_ = openHelp;
}

- (BOOL)alertShowHelp:(NSAlert*)alert {
    static_cast<void>(alert);
    openHelp_();
    return YES;
}

@end

namespace dovrel {

namespace {

/// The value that runModal returns for the first button. It is a number here, because its name in the headers
/// differs between versions of the platform.
constexpr NSInteger kFirstButtonReturn = 1000;

/// NSAlertStyle's value for a warning. It is a number for the same reason.
constexpr int kWarningStyle = 0;

// Raises an Objective-C exception if the alert cannot be shown. Returns what runModal returned, which can be any
// number if the host ended the alert.
NSInteger run(NSAlert* alert, const ModalAlert& content) {
    [alert addButtonWithTitle:[NSString stringWithUTF8String:content.firstButton]];
    if (content.secondButton != nullptr)
        [alert addButtonWithTitle:[NSString stringWithUTF8String:content.secondButton]];
    if (content.openHelp != nullptr) {
        DovrelAlertHelp* const help = [[[DovrelAlertHelp alloc] init] autorelease];
        [help setFunction:content.openHelp];
        [alert setDelegate:(id)help];
        [alert setShowsHelp:YES];
    }
    [alert setMessageText:[NSString stringWithUTF8String:content.title]];
    [alert setInformativeText:[NSString stringWithUTF8String:content.body]];
    [alert setAlertStyle:(NSAlertStyle)kWarningStyle];
    return [alert runModal];
}

// Objective-C exceptions are caught here. A function with @try must not contain C++ objects.
bool tryToRun(const ModalAlert& content, bool* pressedFirst) {
    bool wasRun = false;
    @try {
        NSAlert* const alert = [[[NSAlert alloc] init] autorelease];
        if (NSApplicationLoad()) {
            const NSInteger pressed = run(alert, content);
            wasRun = alert != nil;
            if (wasRun) *pressedFirst = pressed == kFirstButtonReturn;
        }
    } @catch (...) {
        wasRun = false;
    }
    return wasRun;
}

}  // namespace

bool runModalAlert(const ModalAlert& alert, bool* pressedFirst) noexcept {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    const bool wasRun = tryToRun(alert, pressedFirst);
    [pool release];
    return wasRun;
}

}  // namespace dovrel
