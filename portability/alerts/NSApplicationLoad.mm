#import <AppKit/AppKit.h>

#include "portability/alerts/AlertHelper.h"
#include "portability/foundation/ReadableHostTexts.h"

namespace {

// Exceptions of C++ end here: the caller's frames know those of Objective-C only.
bool canShowAlerts() {
    try {
        return !portability::usableAlertHelper().empty();
    } catch (...) {
        return false;
    }
}

}  // namespace

BOOL NSApplicationLoad(void) {
    portability::makeHostTextsReadable();
    return canShowAlerts() ? YES : NO;
}
