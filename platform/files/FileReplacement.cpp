#include "platform/files/FileReplacement.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

#include "platform/files/FileWriting.h"
#include "platform/files/OpenFile.h"
#include "platform/files/StandardStreamGuard.h"
#include "platform/files/SuccessorFile.h"

namespace dovrel {

namespace {

bool isPlainFile(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// Returns whether another file can take over the name of this one without a visible difference.
bool isReplaceable(const std::string& path, struct stat& status) {
    return lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           !hasExtendedAttributes(path);
}

bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Writes a file that does not exist yet, or one that is not regular.
bool writeNew(const std::string& path, const std::string& text) {
    struct stat named;
    const bool isNew = lstat(path.c_str(), &named) != 0;
    OpenFile file(std::fopen(path.c_str(), "w+b"));
    struct stat status;
    if (!file || fstat(fileno(file.get()), &status) != 0) return false;
    const bool mayGrow = !S_ISREG(status.st_mode) || isWithinSizeLimit(static_cast<off_t>(text.size()));
    const bool isComplete = mayGrow && std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    const bool isWritten = std::fclose(file.release()) == 0 && isComplete;
    // Others would read the beginning of the text as the whole.
    const bool isLeftover = !isWritten && isNew && lstat(path.c_str(), &named) == 0;
    if (isLeftover && isSameFile(named, status)) std::remove(path.c_str());
    return isWritten;
}

// Mode "r+b" never creates a file. In a sticky folder some systems refuse to open another user's file in a
// mode that can create one, even if it is writable.
bool writeInPlace(const std::string& path, const std::string& text) {
    OpenFile file(std::fopen(path.c_str(), "r+b"));
    struct stat status;
    if (!file || fstat(fileno(file.get()), &status) != 0) return false;
    const bool isComplete = overwrite(fileno(file.get()), status.st_size, text);
    return std::fclose(file.release()) == 0 && isComplete;
}

// A file that is not writable is not replaced, even if the permissions of its folder would allow that.
bool isWritable(const std::string& path) {
    return OpenFile(std::fopen(path.c_str(), "r+b")) != nullptr;
}

}  // namespace

bool replaceFileContent(const std::string& path, const std::string& text) {
    const StandardStreamGuard guard;
    if (!isPlainFile(path)) {
        const bool isWritten = writeNew(path, text);
        const int error = errno;
        if (isPlainFile(path)) SuccessorFile::removeLeftovers(path);
        errno = error;
        return isWritten;
    }
    SuccessorFile::removeLeftovers(path);  // first, because they take room
    if (!isWritable(path)) return false;
    struct stat old;
    if (isReplaceable(path, old)) {
        const auto outcome = SuccessorFile::replace(path, old, text);
        if (outcome != SuccessorFile::Outcome::kRefused) return outcome == SuccessorFile::Outcome::kReplaced;
    }
    return writeInPlace(path, text);
}

}  // namespace dovrel
