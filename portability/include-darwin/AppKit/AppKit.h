#pragma once
#import <Foundation/Foundation.h>
typedef NSUInteger NSAlertStyle;
@interface NSAlert : NSObject
- (id)addButtonWithTitle:(NSString*)t;
- (void)setDelegate:(id)d;
- (void)setShowsHelp:(BOOL)b;
- (void)setMessageText:(NSString*)s;
- (void)setInformativeText:(NSString*)s;
- (void)setAlertStyle:(NSAlertStyle)s;
- (NSInteger)runModal;
@end
