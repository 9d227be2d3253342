#import <Foundation/Foundation.h>

#include <string.h>
#include <unistd.h>

#include "tests/macho/sample/Sample.h"

#define EXPECT(condition) \
    if (!(condition)) return __LINE__

namespace {

struct OnWayOut {
    ~OnWayOut() { ++*count; }
    int* count;
};

}  // namespace

// Returned in two registers.
struct SampleRange {
    NSUInteger location;
    NSUInteger length;
};

@interface DovrelSampleObject : NSObject {
    char first_;
    int second_;
}
+ (int)answer;
- (id)initWithNumber:(int)number;
- (int)second;
- (SampleRange)range;
@end

// The compiler may list this class before or after its superclass.
@interface DovrelAnySampleObject : DovrelSampleObject {
    int third_;
}
- (int)third;
@end

@implementation DovrelAnySampleObject

- (int)third {
    return third_;
}

@end

@implementation DovrelSampleObject

+ (int)answer {
    return 42;
}

- (id)initWithNumber:(int)number {
    first_ = 1;
    second_ = number;
    return self;
}

- (int)second {
    return second_ + first_;
}

- (SampleRange)range {
    SampleRange range;
    range.location = static_cast<NSUInteger>(second_);
    range.length = 7;
    return range;
}

@end

namespace {

int messages() {
    EXPECT([DovrelSampleObject answer] == 42);
    DovrelAnySampleObject* const object = [[[DovrelAnySampleObject alloc] initWithNumber:5] autorelease];
    EXPECT([object second] == 6);
    EXPECT([object third] == 0);
    EXPECT([object range].location == 5 && [object range].length == 7);
    DovrelSampleObject* const none = nil;
    EXPECT([none second] == 0);
    return 0;
}

int strings() {
    EXPECT([@"constant" length] == 8);
    EXPECT([@"gr\u00fcn \u20ac" length] == 6);
    EXPECT(memcmp([@"gr\u00fcn" UTF8String],
                  "gr\xC3\xBC"
                  "n",
                  6) == 0);
    NSString* const text = [NSString stringWithUTF8String:"constant"];
    EXPECT([text length] == [@"constant" length]);
    return 0;
}

// An exception of Objective-C runs destructors only in 64 bits. In 32 bits it jumps directly to the handler.
constexpr bool kRunsDestructors = sizeof(void*) == 8;

// Raises an exception, because there is no such program.
__attribute__((noinline)) int launch(int* count) {
    const OnWayOut onWayOut = {count};
    NSTask* const task = [[[NSTask alloc] init] autorelease];
    [task setLaunchPath:@"/nonexistent/program"];
    [task launch];
    return [task terminationStatus] + *count;
}

int exceptions() {
    int count = 0;
    for (int i = 1; i <= 100; ++i) {
        int result = -1;
        @try {
            result = launch(&count);
        } @catch (...) {
            result = 1000 + i;
        }
        EXPECT(result == 1000 + i);
        EXPECT(count == (kRunsDestructors ? i : 0));
    }
    return 0;
}

int nestedExceptions() {
    int count = 0;
    int inner = 0;
    int outer = 0;
    @try {
        @try {
            launch(&count);
        } @catch (...) {
            ++inner;
        } @
        try {
            inner += [DovrelSampleObject answer];
        } @catch (...) {
            inner = -1;
        }
        launch(&count);
    } @catch (...) {
        ++outer;
    }
    EXPECT(inner == 43);
    EXPECT(outer == 1);
    return 0;
}

int answersInsideTry() {
    DovrelSampleObject* const object = [[[DovrelSampleObject alloc] initWithNumber:5] autorelease];
    DovrelSampleObject* const none = nil;
    SampleRange range = {0, 0};
    int second = -1;
    @try {
        range = [object range];
        second = [object second] + [none second];
    } @catch (...) {
        return __LINE__;
    }
    EXPECT(range.location == 5 && range.length == 7);
    EXPECT(second == 6);
    return 0;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int Sample_ObjectiveC() {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    int line = messages();
    if (line == 0) line = strings();
    if (line == 0) line = exceptions();
    if (line == 0) line = nestedExceptions();
    if (line == 0) line = answersInsideTry();
    [pool release];
    return line;
}
