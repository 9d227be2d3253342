#include "tools/server/ServerProcesses.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "InterProcessCommunication/BSDProcessList.h"
#include "InterProcessCommunication/ServerDiscovery.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {

std::vector<pid_t> findServers() {
    kinfo_proc* list = nullptr;
    size_t count = 0;
    if (const int error = GetBSDProcessList(&list, &count))
        throw ToolFailure(std::string("the list of processes cannot be read: ") + std::strerror(error));
    const std::unique_ptr<kinfo_proc, void (*)(void*)> owner(list, std::free);
    std::vector<pid_t> found;
    for (size_t index = 0; index < count; ++index)
        if (std::strcmp(list[index].kp_proc.p_comm, kServerProcessName) == 0)
            found.push_back(list[index].kp_proc.p_pid);
    return found;
}

}  // namespace dovrel::tools
