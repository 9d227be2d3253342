// An owned file descriptor that a forked process does not get. Private to the layer.
//
// Close-on-exec does not help if a host forks without starting a program: its child would keep a lock locked
// and a socket listening for as long as it runs.
#pragma once

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// While it exists, no other thread of this process forks by fork(), so that descriptors can be opened and
/// made unshared in one step. Threads wait for each other; do not nest. The wait ends after a second, because
/// the thread that it waits for may not exist in a forked process, or may be interrupted by a signal handler
/// that forks.
class ForkPause {
  public:
    ForkPause() noexcept;
    ForkPause(const ForkPause&) = delete;
    ForkPause& operator=(const ForkPause&) = delete;
    ~ForkPause();

  private:
    const bool held_;
};

/// In a process that fork() creates, the number of the descriptor stays valid, but it is /dev/null. This does
/// not hold for copies of the process by clone(2) or vfork(2).
class UnsharedDescriptor {
  public:
    UnsharedDescriptor() = default;
    UnsharedDescriptor(UnsharedDescriptor&& other) noexcept = default;
    UnsharedDescriptor& operator=(UnsharedDescriptor&& other) noexcept;
    ~UnsharedDescriptor() { close(); }

    /// Closes the current descriptor and takes the ownership of `descriptor`. The caller has a ForkPause that
    /// began before the descriptor was opened. Returns false, with errno EMFILE, if there are too many
    /// unshared descriptors; `descriptor` is then closed.
    bool take(FileDescriptor descriptor);

    /// Closes the descriptor. The caller must not have a ForkPause.
    void close() noexcept;

    const FileDescriptor& descriptor() const { return descriptor_; }
    int get() const { return descriptor_.get(); }
    explicit operator bool() const { return static_cast<bool>(descriptor_); }

  private:
    FileDescriptor descriptor_;
};

}  // namespace portability
