#include "portability/files/FileReference.h"

#include <CoreServices/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <functional>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "portability/files/FileErrors.h"
#include "portability/posix/OpenFolder.h"
#include "portability/posix/Paths.h"

namespace portability {
namespace {

constexpr UInt32 kMark = 0x46535265;
struct Identity {
    UInt64 device;
    UInt64 number;
    UInt64 mark;  // 0 if the file system has none
};

struct Content {
    UInt32 mark;
    UInt32 path;
    Identity identity;
};
static_assert(sizeof(Content) <= sizeof(FSRef), "fits into the reference");

class PathTable {
  public:
    UInt32 enterPath(const std::string& path) {
        const std::lock_guard<std::mutex> lock(mutex_);
        // Adds the new entry to `paths_` first. If memory runs out, neither container has changed.
        paths_.emplace_back();
        try {
            const auto added = numbers_.try_emplace(path, static_cast<UInt32>(paths_.size() - 1));
            if (added.second) {
                paths_.back() = &added.first->first;
            } else {
                paths_.pop_back();
            }
            return added.first->second;
        } catch (...) {
            paths_.pop_back();
            throw;
        }
    }

    bool find(UInt32 number, std::string& path) {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (number >= paths_.size()) {
            return false;
        }
        path = *paths_[number];
        return true;
    }

  private:
    std::mutex mutex_;
    std::unordered_map<std::string, UInt32> numbers_;
    std::vector<const std::string*> paths_;  // the keys of `numbers_`, ordered by number
};

PathTable& pathTable() {
    // Never destroyed, because references may be used while the process exits.
    static auto& table = *new PathTable;
    return table;
}

// Returns a hash of the file's handle. A file system that can find files by number has such handles, and they
// differ between files that have had the same number one after the other. Here their bytes are only compared.
std::size_t handleMark(const std::string& path) {
    alignas(file_handle) std::array<char, sizeof(file_handle) + MAX_HANDLE_SZ> memory = {};
    file_handle* handle = reinterpret_cast<file_handle*>(memory.data());
    handle->handle_bytes = MAX_HANDLE_SZ;
    int mount = 0;
    if (name_to_handle_at(AT_FDCWD, path.c_str(), handle, &mount, 0) != 0) {
        return 0;
    }
    return std::hash<std::string_view>()(std::string_view(memory.data(), memory.size()));
}

// Returns the time of creation, for file systems without handles. Two files with the same number have
// different times if the system's clock has advanced between them.
std::size_t birthMark(const struct statx& status) {
    if ((status.stx_mask & STATX_BTIME) == 0) {
        return 0;
    }
    return static_cast<std::size_t>(status.stx_btime.tv_sec * 1000000000 + status.stx_btime.tv_nsec);
}

int readIdentity(const std::string& path, Identity& identity) {
    struct statx status;
    if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_INO | STATX_BTIME, &status) != 0) {
        return errno;
    }
    identity.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    identity.number = status.stx_ino;
    identity.mark = handleMark(path);
    if (identity.mark == 0) {
        identity.mark = birthMark(status);
    }
    return 0;
}

bool isSameObject(const Identity& first, const Identity& second) {
    return first.device == second.device && first.number == second.number;
}

// Returns whether the objects are certainly the same, although the system reuses the inode numbers of deleted
// files. At the old path a match of the numbers is enough; under another name it could be the wrong file.
bool isSameObjectForSure(const Identity& first, const Identity& second) {
    return isSameObject(first, second) && first.mark == second.mark && first.mark != 0;
}

bool findInFolder(const std::string& folder, const Identity& identity, std::string& path) {
    OpenFolder entries(folder);
    while (const dirent* entry = entries.next()) {
        Identity found;
        const std::string candidate = (folder == "/" ? folder : folder + '/') + entry->d_name;
        if (entry->d_ino == identity.number && readIdentity(candidate, found) == 0 &&
            isSameObjectForSure(found, identity)) {
            path = candidate;
            return true;
        }
    }
    return false;
}

OSErr readContent(const FSRef* ref, Content& content) {
    if (ref == nullptr) {
        return paramErr;
    }
    std::memcpy(&content, ref->hidden, sizeof content);
    if (content.mark != kMark) {
        return errFSBadFSRef;
    }
    return noErr;
}

}  // namespace

int makeReference(const std::string& path, FSRef* ref) {
    Content content{kMark, 0, {}};
    const int failure = readIdentity(path, content.identity);
    if (failure != 0) {
        return failure;
    }
    content.path = pathTable().enterPath(path);
    std::memset(ref->hidden, 0, sizeof ref->hidden);
    std::memcpy(ref->hidden, &content, sizeof content);
    return 0;
}

OSErr resolveReference(const FSRef* ref, std::string& path) {
    Content content;
    const OSErr result = readContent(ref, content);
    if (result != noErr) {
        return result;
    }
    std::string oldPlace;
    if (!pathTable().find(content.path, oldPlace)) {
        return errFSBadFSRef;
    }
    Identity found;
    const int failure = readIdentity(oldPlace, found);
    if (failure == 0 && isSameObject(found, content.identity)) {
        path = oldPlace;
        return noErr;
    }
    if (findInFolder(getParent(oldPlace), content.identity, path)) {
        return noErr;
    }
    const bool isGone = failure == 0 || failure == ENOTDIR;
    return fileError(isGone ? ENOENT : failure);
}

OSErr compareReferences(const FSRef* first, const FSRef* second) {
    Content contents[2];
    const FSRef* refs[2] = {first, second};
    for (int index = 0; index < 2; ++index) {
        const OSErr result = readContent(refs[index], contents[index]);
        if (result != noErr) {
            return result;
        }
    }
    if (contents[0].identity.device != contents[1].identity.device) {
        return diffVolErr;
    }
    if (!isSameObject(contents[0].identity, contents[1].identity)) {
        return errFSRefsDifferent;
    }
    return noErr;
}

}  // namespace portability
