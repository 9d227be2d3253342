#include <signal.h>

#include <cerrno>

#include "tools/system/SystemFacts.h"
#include "ui/information/SystemReport.h"

namespace dovrel::tools {

bool isRunning(pid_t process) {
    return kill(process, 0) == 0 || errno == EPERM;
}

std::string systemRootPath() {
    return "/";
}

std::vector<ProgramProcess> findProcessesOf(const std::string&) {
    return {};
}

std::vector<EndpointFolder> findEndpointFolders() {
    return {};
}

bool isCompleteLibrary(const std::string&) {
    return true;
}

std::string makeSystemReport() {
    return systemReport();
}

}  // namespace dovrel::tools
