#include "platform/trace/SystemLog.h"

#import <Foundation/Foundation.h>

namespace dovrel {

void writeToSystemLog(const std::string& line) noexcept {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    NSLog(@"%@", [NSString stringWithUTF8String:line.c_str()]);
    [pool release];
}

}  // namespace dovrel
