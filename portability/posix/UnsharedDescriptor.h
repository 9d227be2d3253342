// An owned file descriptor that a forked process does not inherit. Private to the layer.
//
// Close-on-exec does not help if a host forks without starting a program: its child would keep a lock locked
// and a socket listening for as long as it runs.
#pragma once

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// While an object exists, fork() on another thread waits, so that a descriptor can be opened and made unshared
/// before the process forks. Only one object at a time exists; other threads wait for it. Do not nest. Every
/// wait ends after a second, because the thread that holds the object may not exist in a forked process, or may
/// be interrupted by a signal handler that forks.
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
