// Reads its first argument through Foundation:
//
//     probe TEXT
//
// Writes the argument in UTF-8, or "changes the environment" if this layer has tried to do that.
#import <Foundation/Foundation.h>

#include <cstdio>

#include "portability/foundation/ReadableHostTexts.h"

namespace {

bool changesEnvironment = false;

int noteChange() {
    changesEnvironment = true;
    return 0;
}

}  // namespace

// All code of this program calls these in place of the C library's functions.
extern "C" {
int setenv(const char*, const char*, int) noexcept { return noteChange(); }
int unsetenv(const char*) noexcept { return noteChange(); }
int putenv(char*) noexcept { return noteChange(); }
}

int main() {
    // So that the program contains this function, which ran when the program was loaded.
    portability::makeHostTextsReadable();
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSString* const text = [[[NSProcessInfo processInfo] arguments] objectAtIndex:1];
    std::puts(changesEnvironment ? "changes the environment" : [text UTF8String]);
    [pool release];
}
