// The bundle's first module has these functions in place of those of the same names that are written in
// Objective-C. So hosts that only reach the server have neither Foundation nor an Objective-C runtime in their
// process. The functions in Objective-C are in the second module, which is loaded when it is needed.
#include <link.h>

#include <cstring>

#include "bundle/FoundationModule.h"
#include "platform/trace/SystemLog.h"
#include "portability/alerts/AlertHelper.h"
#include "portability/foundation/LogLine.h"
#include "portability/tasks/MainRunLoop.h"
#include "ui/alerts/ModalAlert.h"
#include "ui/information/PropertyListFormat.h"

namespace dovrel {

namespace {

bool canShowAlerts() noexcept {
    try {
        return !portability::usableAlertHelper().empty();
    } catch (...) {
        return false;  // memory has run out
    }
}

}  // namespace

// Loads nothing on a system that cannot show alerts.
bool runModalAlert(const ModalAlert& alert, bool* pressedFirst) noexcept {
    const auto* const entries = canShowAlerts() ? portability::foundationEntries() : nullptr;
    return entries != nullptr && entries->runModalAlert(alert, pressedFirst);
}

std::optional<std::string> formatPropertyList(const std::string& list) {
    const auto* const entries = portability::foundationEntries();
    return entries != nullptr ? entries->formatPropertyList(list) : std::nullopt;
}

void writeToSystemLog(const std::string& line) noexcept {
    portability::writeLogLine(line.c_str());
}

}  // namespace dovrel

namespace portability {

namespace {

int hasName(dl_phdr_info* library, size_t, void* name) {
    return std::strstr(library->dlpi_name, static_cast<const char*>(name)) != nullptr;
}

bool isFoundationLoaded() {
    static char name[] = "/libgnustep-base.so";
    return dl_iterate_phdr(hasName, name) != 0;
}

}  // namespace

// Without Foundation, no thread can be in its run loop.
bool runOnMainRunLoop(void* (*procedure)(void*), void* parameter, void** result) {
    const FoundationEntries* const entries = isFoundationLoaded() ? foundationEntries() : nullptr;
    return entries != nullptr && entries->runOnMainRunLoop(procedure, parameter, result);
}

}  // namespace portability
