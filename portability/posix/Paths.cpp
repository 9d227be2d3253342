#include "portability/posix/Paths.h"

#include <sys/stat.h>

#include <cstdlib>
#include <memory>

namespace portability {

bool isThere(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

bool isFolder(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string canonicalPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> canonical(realpath(path.c_str(), nullptr), &std::free);
    return canonical ? std::string(canonical.get()) : std::string();
}

std::string getParent(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return std::string();
    }
    return path.substr(0, slash == 0 ? 1 : slash);
}

std::string getLastComponent(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace portability
