// AppKit, where no other one is at hand: what the library uses of its alerts.
#pragma once

#import <Foundation/Foundation.h>

typedef NSUInteger NSAlertStyle;

@interface NSAlert : NSObject
- (id)addButtonWithTitle:(NSString*)title;
- (void)setMessageText:(NSString*)text;
- (void)setInformativeText:(NSString*)text;
- (void)setAlertStyle:(NSAlertStyle)style;
- (void)setShowsHelp:(BOOL)showsHelp;
- (void)setDelegate:(id)delegate;
- (NSInteger)runModal;
@end
