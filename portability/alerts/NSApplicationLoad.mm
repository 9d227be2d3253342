#import <AppKit/AppKit.h>

#include "portability/alerts/AlertHelper.h"
#include "portability/foundation/ReadableHostTexts.h"

namespace {

// C++ exceptions are caught here, because the caller's frames can only handle those of Objective-C.
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
