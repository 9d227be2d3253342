#include "portability/alerts/AlertHelper.h"

#include <unistd.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "portability/posix/Paths.h"

namespace portability {

namespace {

constexpr char kHelperName[] = "dovrel-alert";

bool isSet(const char* variable) {
    const char* const value = secure_getenv(variable);
    return value != nullptr && *value != '\0';
}

/// Returns the path of the file that is mapped at the address. The kernel's list of mappings contains
/// absolute paths without symbolic links. The loader's path may be relative to a folder that is no longer the
/// host's working directory.
std::string fileMappedAt(uintptr_t address) {
    std::ifstream mappings("/proc/self/maps");
    for (std::string line; std::getline(mappings, line);) {
        uintptr_t begin = 0;
        uintptr_t end = 0;
        if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR, &begin, &end) != 2) continue;
        if (address < begin || address >= end) continue;
        const size_t path = line.find('/');
        return path != std::string::npos ? line.substr(path) : std::string();
    }
    return std::string();
}

bool environmentAllowsAlerts() {
    const char* const alerts = secure_getenv("POS_ALERTS");
    if (alerts != nullptr && std::strcmp(alerts, "log") == 0) return false;
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

}  // namespace

std::string usableAlertHelper() {
    if (!environmentAllowsAlerts()) return std::string();
    const std::string code = fileMappedAt(reinterpret_cast<uintptr_t>(&usableAlertHelper));
    if (code.empty()) return std::string();
    const std::string helper = parentOf(code) + '/' + kHelperName;
    return access(helper.c_str(), X_OK) == 0 && !isFolder(helper) ? helper : std::string();
}

}  // namespace portability
