// The classes and methods of Foundation that the library uses, for systems without Foundation.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef struct objc_object* id;
typedef struct objc_class* Class;
typedef signed char BOOL;
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#if defined(__cplusplus)
#define nil nullptr
#else
#define nil ((void*)0)
#endif

#if defined(__LP64__)
typedef unsigned long NSUInteger;
typedef long NSInteger;
#else
typedef unsigned int NSUInteger;
typedef int NSInteger;
#endif

typedef NSUInteger NSStringEncoding;
enum { NSUTF8StringEncoding = 4 };

@class NSArray, NSString;

__attribute__((objc_root_class))
@interface NSObject {
    Class isa;
}
+ (id)alloc;
- (id)init;
- (id)retain;
- (void)release;
- (id)autorelease;
- (NSString*)description;
@end

@interface NSAutoreleasePool : NSObject
@end

@interface NSString : NSObject
+ (id)stringWithFormat:(NSString*)format, ... __attribute__((format(__NSString__, 1, 2)));
+ (id)stringWithUTF8String:(const char*)text;
- (NSUInteger)length;
- (const char*)UTF8String;
- (NSString*)stringByReplacingOccurrencesOfString:(NSString*)target withString:(NSString*)replacement;
- (id)propertyList;
@end

@interface NSArray : NSObject
@end

@interface NSMutableArray : NSArray
- (void)addObject:(id)object;
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
- (void)setLaunchPath:(NSString*)path;
- (void)setArguments:(NSArray*)arguments;
- (void)setStandardOutput:(id)pipeOrFileHandle;
- (void)setStandardError:(id)pipeOrFileHandle;
- (void)launch;
- (BOOL)isRunning;
- (int)terminationStatus;
@end

CF_EXTERN_C_BEGIN

void NSLog(NSString* format, ...) __attribute__((format(__NSString__, 1, 2)));
Class NSClassFromString(NSString* className);

CF_EXTERN_C_END
