#include "portability/posix/StateFolder.h"

#include <sys/stat.h>

#include <cstdlib>

#include "portability/posix/HomeFolder.h"
#include "portability/posix/Paths.h"

namespace portability {
namespace {

std::string userStateFolder() {
    const char* const folder = secure_getenv("XDG_STATE_HOME");
    if (folder != nullptr && folder[0] == '/') return folder;
    const std::string home = homeFolder();
    return home.empty() ? home : home + "/.local/state";
}

void makeFolder(const std::string& path) {
    if (path.empty() || isThere(path)) return;
    makeFolder(getParent(path));
    // mkdir takes rights away if the umask does.
    if (mkdir(path.c_str(), S_IRWXU) == 0) chmod(path.c_str(), S_IRWXU);
}

}  // namespace

std::string makeStateFolder() {
    const std::string folder = userStateFolder();
    if (folder.empty()) return folder;
    makeFolder(folder + "/dovrel");
    return folder + "/dovrel";
}

}  // namespace portability
