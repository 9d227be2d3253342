// NSLog for the code that is linked to this layer. GNUstep 1.28 has its own, but that one:
// - writes in the encoding of the process;
// - sets the host's locale from the environment at its first line;
// - ends the process if standard error is a pipe without a reader;
// - ends the process if it is first used in an exit handler that was registered before Foundation was loaded.
#import <Foundation/Foundation.h>

#include <string>

#include "portability/foundation/LogLine.h"

void NSLog(NSString* format, ...) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    va_list arguments;
    va_start(arguments, format);
    const char* const text = [[[[NSString alloc] initWithFormat:format
                                                      arguments:arguments] autorelease] UTF8String];
    va_end(arguments);
    portability::writeLogLine(text != nullptr ? text : "");
    [pool release];
}
