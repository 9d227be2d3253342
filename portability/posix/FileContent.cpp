#include "portability/posix/FileContent.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "portability/posix/FileDescriptor.h"

namespace portability {
namespace {

// Appends the file's bytes to `bytes`. Returns true if it reached the end of the file, false after an error
// or if there are more than `limit` bytes.
bool readToEnd(int descriptor, std::size_t limit, std::string& bytes) {
    std::array<char, 16384> block;
    while (bytes.size() <= limit) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count == 0) {
            return true;
        }
        if (count > 0) {
            bytes.append(block.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return false;
}

}  // namespace

std::optional<std::string> readFile(const std::string& path, std::size_t limit) {
    // O_NONBLOCK, so that opening a pipe does not wait for a writer.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file) {
        return std::nullopt;
    }
    std::string bytes;
    const bool isWhole = readToEnd(file.get(), limit, bytes);
    return isWhole ? std::optional<std::string>(std::move(bytes)) : std::nullopt;
}

}  // namespace portability
