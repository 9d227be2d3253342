#pragma once
#include <CoreFoundation/CoreFoundation.h>
typedef struct objc_object* id;
typedef struct objc_selector* SEL;
typedef struct objc_class* Class;
typedef signed char BOOL;
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#define nil nullptr
#if defined(__LP64__)
typedef unsigned long NSUInteger;
typedef long NSInteger;
#else
typedef unsigned int NSUInteger;
typedef int NSInteger;
#endif
__attribute__((objc_root_class))
@interface NSObject {
    Class isa;
}
+ (id)alloc;
- (id)init;
- (void)release;
- (id)autorelease;
- (id)retain;
- (id)description;
@end
@interface NSString : NSObject
+ (id)stringWithUTF8String:(const char*)s;
- (NSUInteger)length;
- (const char*)UTF8String;
- (NSString*)stringByReplacingOccurrencesOfString:(NSString*)a withString:(NSString*)b;
@end
@interface NSAutoreleasePool : NSObject
@end
@interface NSArray : NSObject
@end
@interface NSMutableArray : NSArray
- (void)addObject:(id)o;
@end
@interface NSFileHandle : NSObject
- (void)closeFile;
@end
@interface NSPipe : NSObject
+ (id)pipe;
- (NSFileHandle*)fileHandleForReading;
- (NSFileHandle*)fileHandleForWriting;
@end
@interface NSTask : NSObject
- (void)setLaunchPath:(NSString*)p;
- (void)setArguments:(NSArray*)a;
- (void)setStandardOutput:(id)o;
- (void)setStandardError:(id)e;
- (void)launch;
- (BOOL)isRunning;
- (int)terminationStatus;
@end
extern "C" void NSLog(NSString* f, ...);
extern "C" Class NSClassFromString(NSString* f);
