#import <Foundation/Foundation.h>

#include "ui/MacOSXMessageDialog.h"

namespace dovrel {

namespace {

void logUnshownAlert(const char* body) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSString* text = [[NSString alloc] initWithCString:body encoding:NSMacOSRomanStringEncoding];
    NSLog(@"Couldn't initialise NSApplication! No Error dialogue shown; message of the failed dialogue:  \n "
          @"\"%@\"\n",
          text);
    [text release];
    [pool release];
}

}  // namespace

int MacOSXMessageDialog::showAlert(const char* /*title*/, const char* body, int /*buttons*/,
                                   int /*reserved*/) {
    logUnshownAlert(body != nullptr ? body : "");
    return kAlertAnswerNotShown;
}

}  // namespace dovrel
