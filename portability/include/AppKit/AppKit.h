// The part of the platform's alerts that the library uses, for systems without AppKit. A helper process shows
// the alerts, so no GUI library is loaded into the host.
#pragma once

#if defined(__APPLE__)
#include_next <AppKit/AppKit.h>
#else
#import <Foundation/Foundation.h>

typedef NSUInteger NSAlertStyle;

/// An alert with the warning style. It can be run on any thread, and more than once.
@interface DovrelPortabilityAlert : NSObject {
   @private
    NSMutableArray* captions_;
    NSString* messageText_;
    NSString* informativeText_;
    id delegate_;
    BOOL showsHelp_;
}

/// Adds a button. The first button is the default button (Return). The last button means Cancel (Escape and
/// the window's close button). At most three buttons. Without any, the alert has one button with the
/// caption "OK".
- (void)addButtonWithTitle:(NSString*)title;

/// Sets the window's title, which is also the first line. Must not be nil.
- (void)setMessageText:(NSString*)text;

/// Sets the text below the title. Must not be nil.
- (void)setInformativeText:(NSString*)text;

/// Accepts any style, but shows the alert with the warning style (0).
- (void)setAlertStyle:(NSAlertStyle)style;

- (void)setShowsHelp:(BOOL)showsHelp;

/// Sets the delegate, which is not retained. Its method `alertShowHelp:` is called when the user presses
/// Help, on the thread that runs the alert.
- (void)setDelegate:(id)delegate;

/// Shows the alert and waits until the user presses a button. Returns 1000 for the first button, 1001 for the
/// second, and so on. Raises NSGenericException if the alert could not be shown, or if the helper or the
/// display ended before a button was pressed.
- (NSInteger)runModal;

@end

// A host that uses GNUstep's window classes contains a class with the platform's name.
@compatibility_alias NSAlert DovrelPortabilityAlert;
#endif

#if defined(__cplusplus)
extern "C" {
#endif

/// Returns whether alerts can be shown: there is a display and an executable helper, and POS_ALERTS does not
/// prevent it. Does not change the host's state and stores nothing. Thread-safe.
BOOL NSApplicationLoad(void);

#if defined(__cplusplus)
}
#endif
