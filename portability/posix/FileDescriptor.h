// An owned file descriptor, which the destructor closes. Private to the layer.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace portability {

class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~FileDescriptor() { reset(); }

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

    /// Releases the ownership and returns the descriptor, or -1 if there is none. The caller closes it.
    int release() { return std::exchange(number_, -1); }

    /// Closes the current descriptor, leaves errno unchanged, and takes the ownership of `number`.
    void reset(int number = -1) {
        if (number_ >= 0) {
            const int kept = errno;
            close(number_);
            errno = kept;
        }
        number_ = number;
    }

  private:
    int number_ = -1;
};

/// Takes ownership of the descriptor `number` (or -1 for none). Returns the same file with a number above
/// those of the standard streams, or no descriptor, with errno set, on failure. The new descriptor closes on
/// exec. Thread-safe.
///
/// A descriptor that stays open while the host continues must not have the number of a standard stream.
/// Otherwise a host that has closed that stream would read from this file, or write to it.
inline FileDescriptor aboveStandardStreams(int number) {
    FileDescriptor given(number);
    if (number > STDERR_FILENO || number < 0) return given;
    return FileDescriptor(fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace portability
