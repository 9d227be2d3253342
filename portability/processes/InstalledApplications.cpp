#include "portability/processes/InstalledApplications.h"

#include <sys/stat.h>

#include <algorithm>
#include <deque>
#include <set>
#include <utility>

#include "portability/posix/OpenFolder.h"
#include "portability/posix/Paths.h"
#include "portability/posix/SystemRoot.h"
#include "portability/processes/ApplicationBundle.h"

namespace portability {
namespace {

constexpr int kDeepest = 4;
constexpr std::size_t kMostFolders = 4096;

struct Folder {
    std::string path;
    int depth;  // number of folders below a fixed place
};

// Recognises folders that were visited before, because symbolic links can form a circle.
class VisitedFolders {
  public:
    bool isNew(const std::string& path) {
        struct stat status;
        return stat(path.c_str(), &status) == 0 && visited_.emplace(status.st_dev, status.st_ino).second;
    }

  private:
    std::set<std::pair<dev_t, ino_t>> visited_;
};

bool isFolderEntry(const dirent& entry, const std::string& path) {
    if (entry.d_type == DT_DIR) return true;
    return (entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN) && isFolder(path);
}

std::vector<std::string> foldersIn(const std::string& folder) {
    std::vector<std::string> folders;
    OpenFolder entries(folder);
    while (const dirent* entry = entries.next()) {
        std::string path = folder + '/' + entry->d_name;
        if (isFolderEntry(*entry, path)) folders.push_back(std::move(path));
    }
    return folders;
}

// Adds the path unless the list contains it. Several symbolic links can lead to the same application.
void addOnce(std::vector<std::string>& paths, const std::string& path) {
    if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(path);
}

}  // namespace

InstalledApplications::InstalledApplications() {
    std::deque<Folder> unread;
    for (const std::string& place : fixedPlaces())
        unread.push_back({place, 0});
    VisitedFolders visited;
    for (std::size_t count = 0; count < kMostFolders && !unread.empty(); ++count) {
        const Folder folder = std::move(unread.front());
        unread.pop_front();
        if (!visited.isNew(folder.path)) continue;
        for (std::string& path : foldersIn(folder.path)) {
            const std::string name = applicationName(path);
            if (!name.empty()) {
                addOnce(applications_[name], canonicalPath(path));
            } else if (folder.depth < kDeepest) {
                unread.push_back({std::move(path), folder.depth + 1});
            }
        }
    }
}

const std::vector<std::string>& InstalledApplications::named(const std::string& name) const {
    static const std::vector<std::string> none;
    const auto found = applications_.find(name);
    return found == applications_.end() ? none : found->second;
}

}  // namespace portability
