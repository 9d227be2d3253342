#include "portability/posix/CodePath.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <fstream>

namespace portability {

// The kernel's list of mappings contains absolute paths without symbolic links. The loader's path may be relative
// to a folder that is no longer the host's working directory.
std::string findCodeFile(const void* address) {
    const auto wanted = reinterpret_cast<uintptr_t>(address);
    std::ifstream mappings("/proc/self/maps");
    for (std::string line; std::getline(mappings, line);) {
        uintptr_t begin = 0;
        uintptr_t end = 0;
        if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR, &begin, &end) != 2) continue;
        if (wanted < begin || wanted >= end) continue;
        const size_t path = line.find('/');
        return path != std::string::npos ? line.substr(path) : std::string();
    }
    return std::string();
}

}  // namespace portability
