#include "portability/posix/HomeFolder.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace portability {

std::string homeFolder() {
    const char* home = secure_getenv("HOME");
    if (home != nullptr && home[0] == '/') {
        return home;
    }
    const long suggested = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16384);
    struct passwd entry;
    struct passwd* found = nullptr;
    getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return found == nullptr ? std::string() : std::string(found->pw_dir);
}

}  // namespace portability
