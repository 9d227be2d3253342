#include "portability/alerts/AlertHelper.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "portability/posix/CodePath.h"
#include "portability/posix/Paths.h"

namespace portability {

namespace {

constexpr char kHelperName[] = "dovrel-alert";

bool isSet(const char* variable) {
    const char* const value = secure_getenv(variable);
    return value != nullptr && *value != '\0';
}

bool environmentAllowsAlerts() {
    const char* const alerts = secure_getenv("POS_ALERTS");
    if (alerts != nullptr && std::strcmp(alerts, "log") == 0) return false;
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

}  // namespace

std::string usableAlertHelper() {
    if (!environmentAllowsAlerts()) return std::string();
    const std::string code = findCodeFile(reinterpret_cast<const void*>(&usableAlertHelper));
    if (code.empty()) return std::string();
    const std::string helper = getParent(code) + '/' + kHelperName;
    return access(helper.c_str(), X_OK) == 0 && !isFolder(helper) ? helper : std::string();
}

}  // namespace portability
