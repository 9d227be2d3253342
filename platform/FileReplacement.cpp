#include "platform/FileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/OpenFile.h"

namespace dovrel {

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kOwnerOnly = 0600;
constexpr int kMostNames = 100;

bool overwrite(const std::string& path, const std::string& text) {
    OpenFile file(std::fopen(path.c_str(), "w+b"));
    if (!file) return false;
    const bool isComplete = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    return std::fclose(file.release()) == 0 && isComplete;
}

// Whether another file can take over the name of what is there. A file that may not be written is left to the
// attempt to write it, which then says so.
bool isReplaceable(const std::string& path, struct stat& status) {
    return lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           OpenFile(std::fopen(path.c_str(), "r+b")) != nullptr;
}

// A new file beside an old one, whose place it takes in the end, or it is gone.
class Successor {
  public:
    Successor(const std::string& oldPath, const struct stat& old) : oldPath_(oldPath) {
        int descriptor = -1;
        for (int n = 0; n < kMostNames && descriptor < 0; ++n) {
            path_ = oldPath + ".new" + std::to_string(n);
            descriptor = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly);
            if (descriptor < 0 && errno != EEXIST) break;
        }
        if (descriptor < 0) {
            // Not so without room for one more file: there is none for the content either.
            mayWriteInPlace_ = errno == EACCES || errno == EPERM || errno == ENAMETOOLONG || errno == EEXIST;
            return;
        }
        exists_ = true;
        struct stat status;
        const bool isAlike = fstat(descriptor, &status) == 0 && status.st_uid == old.st_uid &&
                             status.st_gid == old.st_gid &&
                             fchmod(descriptor, old.st_mode & kPermissionBits) == 0;
        mayWriteInPlace_ = !isAlike;
        close(descriptor);
    }
    Successor(const Successor&) = delete;
    Successor& operator=(const Successor&) = delete;
    ~Successor() {
        if (exists_) std::remove(path_.c_str());
    }

    /// Whether there can be no file like the old one, which says nothing against writing that.
    bool mayWriteInPlace() const { return mayWriteInPlace_; }

    bool succeed(const std::string& text) {
        if (!overwrite(path_, text)) return false;
        if (std::rename(path_.c_str(), oldPath_.c_str()) != 0) return false;
        exists_ = false;
        return true;
    }

  private:
    const std::string oldPath_;
    std::string path_;
    bool exists_ = false;
    bool mayWriteInPlace_ = false;
};

}  // namespace

bool replaceFileContent(const std::string& path, const std::string& text) {
    struct stat old;
    if (isReplaceable(path, old)) {
        Successor successor(path, old);
        if (!successor.mayWriteInPlace()) return successor.succeed(text);
    }
    return overwrite(path, text);
}

}  // namespace dovrel
