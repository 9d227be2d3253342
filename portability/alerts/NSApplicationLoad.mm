#import <AppKit/AppKit.h>

#include "alerts/AlertHelper.h"
#include "foundation/ReadableHostTexts.h"

namespace {

// Exceptions of C++ end here: the caller's frames know those of Objective-C only.
bool hasHelper() {
    try {
        return !portability::alertHelper().empty();
    } catch (...) {
        return false;
    }
}

}  // namespace

BOOL NSApplicationLoad(void) {
    portability::makeHostTextsReadable();
    return portability::canEnvironmentShowAlerts() && hasHelper() ? YES : NO;
}
