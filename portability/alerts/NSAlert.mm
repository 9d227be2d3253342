#import <AppKit/AppKit.h>
#include <unistd.h>

#include "portability/alerts/AlertConversation.h"

namespace {

constexpr NSInteger kFirstButtonReturn = 1000;
constexpr NSInteger kNotShown = -1;

}  // namespace

@interface NSObject (DovrelPortabilityAlertDelegate)
- (BOOL)alertShowHelp:(NSAlert*)alert;
@end

@implementation DovrelPortabilityAlert

- (id)init {
    self = [super init];
    if (self != nil) captions_ = [[NSMutableArray alloc] init];
    return self;
}

- (void)dealloc {
    [captions_ release];
    [messageText_ release];
    [informativeText_ release];
    [super dealloc];
}

- (void)addButtonWithTitle:(NSString*)title {
    [captions_ addObject:title];
}

- (void)setMessageText:(NSString*)text {
    [messageText_ autorelease];
    messageText_ = [text copy];
}

- (void)setInformativeText:(NSString*)text {
    [informativeText_ autorelease];
    informativeText_ = [text copy];
}

- (void)setAlertStyle:(NSAlertStyle)style {
    static_cast<void>(style);
}

- (void)setShowsHelp:(BOOL)showsHelp {
    showsHelp_ = showsHelp;
}

- (void)setDelegate:(id)delegate {
    delegate_ = delegate;
}

static std::string utf8(NSString* text) {
    return text != nil ? std::string([text UTF8String]) : std::string();
}

static portability::AlertRequest makeRequest(DovrelPortabilityAlert* alert) {
    portability::AlertRequest request;
    request.title = utf8(alert->messageText_);
    request.body = utf8(alert->informativeText_);
    for (NSUInteger index = 0; index < [alert->captions_ count]; ++index)
        request.buttons.push_back(utf8([alert->captions_ objectAtIndex:index]));
    if (request.buttons.empty()) request.buttons.push_back("OK");
    request.help = alert->showsHelp_ == YES;
    request.host = getpid();
    return request;
}

// A function with @try must not contain C++ objects, because not every compiler unwinds both kinds of
// exceptions. If the delegate raises an exception, the alert stays on the screen.
static void showHelp(void* context) {
    DovrelPortabilityAlert* const alert = static_cast<DovrelPortabilityAlert*>(context);
    @try {
        if ([alert->delegate_ respondsToSelector:@selector(alertShowHelp:)])
            [alert->delegate_ alertShowHelp:alert];
    } @catch (...) {
    }
}

// C++ exceptions are caught here, because the caller's frames can only handle those of Objective-C.
static NSInteger pressedButton(DovrelPortabilityAlert* alert) {
    try {
        const auto button = portability::runAlert(makeRequest(alert), showHelp, alert);
        return button ? static_cast<NSInteger>(*button) : kNotShown;
    } catch (...) {
        return kNotShown;
    }
}

- (NSInteger)runModal {
    const NSInteger button = pressedButton(self);
    if (button == kNotShown)
        [NSException raise:NSGenericException format:@"The alert was not shown, or not answered."];
    return kFirstButtonReturn + button;
}

@end
