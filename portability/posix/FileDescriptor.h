// An owned file descriptor, which the destructor closes. Private to the layer.
#pragma once

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

}  // namespace portability
