// The part of AppKit that the library uses, for systems without AppKit.
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
