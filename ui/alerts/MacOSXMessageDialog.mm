#import <AppKit/AppKit.h>
#include <CoreServices/CoreServices.h>

#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"
#include "platform/text/ReadableText.h"
#include "platform/text/TextConversions.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"
#include "ui/alerts/HelpPages.h"
#include "ui/alerts/MacOSXMessageDialog.h"
#include "ui/information/Component.h"

// Opens the help pages when the user presses the Help button of an alert.
@interface DovrelAlertHelp : NSObject
- (BOOL)alertShowHelp:(NSAlert*)alert;
@end

@implementation DovrelAlertHelp

- (BOOL)alertShowHelp:(NSAlert*)alert {
    static_cast<void>(alert);
    dovrel::openHelp();
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

struct AlertRequest {
    const char* title;
    const char* body;
    int buttons;
    int answer;
};

struct ButtonSet {
    const char* firstKey;   ///< key of the text on the first button
    const char* secondKey;  ///< key of the text on the second button; null if there is only one button
    int firstAnswer;        ///< the AlertAnswer when the user presses the first button
};

/// Returns the buttons for a value of AlertButtons. For every other number it returns OK alone.
ButtonSet buttonSet(int buttons) {
    switch (buttons) {
        case kAlertButtonsOKCancel:
            return {kGeneralButtonOk, kGeneralButtonCancel, kAlertAnswerOK};
        case kAlertButtonsRetryCancel:
        case kAlertButtonsRetryCancelAlternative:
            return {kGeneralButtonRetry, kGeneralButtonCancel, kAlertAnswerRetry};
        default:
            return {kGeneralButtonOk, nullptr, kAlertAnswerOK};
    }
}

/// The texts of an alert. The strings are valid until the autorelease pool is drained.
struct AlertTexts {
    NSString* title;
    NSString* body;
    NSString* firstButton;
    NSString* secondButton;  ///< nil if there is no second button
};

/// The body of the alert replaces "%s".
NSString* const kUnshownAlertText = @"Couldn't initialise NSApplication! No Error dialogue shown; message of "
                                    @"the failed dialogue:  \n \"%s\"\n";

/// Returns the text as a string. The text can have any encoding that readableText() knows. Each line end
/// becomes one line feed, because not every window system breaks a line at a carriage return.
NSString* readableString(const std::string& text) {
    return [NSString stringWithUTF8String:withLineFeedsOnly(readableText(text)).c_str()];
}

NSString* captionString(const char* key) { return readableString(MultiLanguageSupport::getText(key)); }

// Replaces the placeholder before NSLog is called. NSLog would read the bytes for a "%s" in the system
// encoding, which does not have most characters.
void logUnshownAlert(NSString* body) {
    NSLog(@"%@", [kUnshownAlertText stringByReplacingOccurrencesOfString:@"%s" withString:body]);
}

// Runs the alert. Returns false if that failed. Otherwise `*pressed` is what runModal returned, which can be
// any number if the host ended the alert. A function with @try must not contain C++ objects.
bool runModalAlert(AlertTexts texts, BOOL showsHelp, NSInteger* pressed) {
    bool wasRun = false;
    @try {
        NSAlert* alert = [[[NSAlert alloc] init] autorelease];
        [alert addButtonWithTitle:texts.firstButton];
        if (texts.secondButton != nil) [alert addButtonWithTitle:texts.secondButton];
        if (showsHelp) {
            [alert setDelegate:(id)[[[DovrelAlertHelp alloc] init] autorelease]];
            [alert setShowsHelp:YES];
        }
        [alert setMessageText:texts.title];
        [alert setInformativeText:texts.body];
        [alert setAlertStyle:(NSAlertStyle)kWarningStyle];
        *pressed = [alert runModal];
        wasRun = alert != nil;
    } @catch (...) {
        wasRun = false;
    }
    return wasRun;
}

int runAlert(const AlertRequest& request) {
    const ButtonSet set = buttonSet(request.buttons);
    const AlertTexts texts = {readableString(request.title), readableString(request.body),
                              captionString(set.firstKey),
                              set.secondKey != nullptr ? captionString(set.secondKey) : nil};
    NSInteger pressed = 0;
    if (!NSApplicationLoad() || !runModalAlert(texts, isManagementApplication(), &pressed)) {
        logUnshownAlert(texts.body);
        return kAlertAnswerNotShown;
    }
    return pressed == kFirstButtonReturn ? set.firstAnswer : int{kAlertAnswerCancel};
}

void* runRequest(void* parameter) {
    AlertRequest* const request = static_cast<AlertRequest*>(parameter);
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    try {
        request->answer = runAlert(*request);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);  // the alert counts as not shown, as below
    } catch (...) {
        // Memory has run out. An exception must not leave a remote call, so the alert counts as not shown.
    }
    [pool release];
    return nullptr;
}

}  // namespace

int MacOSXMessageDialog::showAlert(const char* title, const char* body, int buttons, int /*reserved*/) {
    AlertRequest request = {title != nullptr ? title : "", body != nullptr ? body : "", buttons,
                            kAlertAnswerNotShown};
    if (_MPIsFullyInitialized() && MPTaskIsPreemptive(kInvalidID)) {
        MPRemoteCall(runRequest, &request, kMPOwningProcessRemoteContext);
    } else {
        runRequest(&request);
    }
    return request.answer;
}

}  // namespace dovrel
