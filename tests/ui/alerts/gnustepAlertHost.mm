// A host that shows its alerts with GNUstep's window classes. The source of the
// alerts is the same as everywhere.
//
//     gnustepAlertHost KIND TITLE BODY
//         writes "text ..." and "button ..." for each text and button of the alert, "end", then "answer N"
#import <AppKit/AppKit.h>

#include <iostream>
#include <string>

#include "settings/MultiLanguageSupport.h"
#include "ui/alerts/MacOSXMessageDialog.h"

namespace {

void tell(const std::string& line) { std::cout << line << std::endl; }

std::string oneLine(NSString* text) {
    return [[text stringByReplacingOccurrencesOfString:@"\n" withString:@"|"] UTF8String];
}

}  // namespace

// Inspects the open alert from within the alert's own loop.
@interface AlertInspector : NSObject
- (void)inspect:(NSTimer*)timer;
@end

@implementation AlertInspector

- (void)tellView:(NSView*)view {
    if ([view isHidden]) return;
    if ([view isKindOfClass:[NSButton class]]) {
        // The alert's picture is a button as well; it is left out.
        NSButton* const button = (NSButton*)view;
        if ([button imagePosition] != NSImageOnly) tell("button " + oneLine([button title]));
    } else if ([view isKindOfClass:[NSTextField class]]) {
        tell("text " + oneLine([(NSTextField*)view stringValue]));
    }
    for (NSUInteger index = 0; index < [[view subviews] count]; ++index)
        [self tellView:[[view subviews] objectAtIndex:index]];
}

- (void)inspect:(NSTimer*)timer {
    NSWindow* const window = [[NSApplication sharedApplication] modalWindow];
    if (window == nil) return;
    [timer invalidate];
    [self tellView:[window contentView]];
    tell("end");
}

@end

int main(int, char** values) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    dovrel::MultiLanguageSupport::initialize("English");
    AlertInspector* const inspector = [[[AlertInspector alloc] init] autorelease];
    NSTimer* const timer = [NSTimer timerWithTimeInterval:0.05
                                                   target:inspector
                                                 selector:@selector(inspect:)
                                                 userInfo:nil
                                                  repeats:YES];
    [[NSRunLoop currentRunLoop] addTimer:timer forMode:@"NSModalPanelRunLoopMode"];
    const int answer = dovrel::MacOSXMessageDialog().showAlert(values[2], values[3], std::stoi(values[1]), 0);
    tell("answer " + std::to_string(answer));
    [pool release];
    return 0;
}
