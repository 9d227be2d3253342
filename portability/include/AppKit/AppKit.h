// The platform's alerts, as far as the library uses them, on systems without that framework. They are shown
// by a helper process, so no GUI library comes into this one.
#pragma once

#if defined(__APPLE__)
#include_next <AppKit/AppKit.h>
#else
#import <Foundation/Foundation.h>

typedef NSUInteger NSAlertStyle;

/// An alert of the warning style. It can be run on any thread, more than once.
@interface DovrelPortabilityAlert : NSObject {
   @private
    NSMutableArray* captions_;
    NSString* messageText_;
    NSString* informativeText_;
    id delegate_;
    BOOL showsHelp_;
}

/// The first button is the default one (Return), the last one means Cancel (Escape, the window's close
/// button). At most three; without any there is one with the caption "OK".
- (void)addButtonWithTitle:(NSString*)title;

/// The window's title and first line; not nil.
- (void)setMessageText:(NSString*)text;

/// The text below; not nil.
- (void)setInformativeText:(NSString*)text;

/// There is only the warning style (0); any other is taken and shown as that.
- (void)setAlertStyle:(NSAlertStyle)style;

- (void)setShowsHelp:(BOOL)showsHelp;

/// Its method `alertShowHelp:` is called when the Help button is pressed, on the thread that runs the alert.
/// Not retained.
- (void)setDelegate:(id)delegate;

/// Shows the alert and waits until a button is pressed; returns 1000 for the first one, 1001 for the second
/// and so on. Raises NSGenericException if the alert could not be shown, or if the helper or the display
/// ended before it was answered.
- (NSInteger)runModal;

@end

// A host that has GNUstep's window classes has a class of the platform's name.
@compatibility_alias NSAlert DovrelPortabilityAlert;
#endif

#if defined(__cplusplus)
extern "C" {
#endif

/// Whether alerts can be shown: there is a display and a helper that may be executed, and POS_ALERTS does not
/// forbid it. Any thread; nothing of the host's changes, and nothing is kept.
BOOL NSApplicationLoad(void);

#if defined(__cplusplus)
}
#endif
