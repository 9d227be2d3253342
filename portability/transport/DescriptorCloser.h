// Closes descriptors that a peer sent and nobody wants. Private to the layer.
#pragma once

#include <memory>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// Closes the descriptor on this thread. A socket is first told not to wait for its unsent data, because a
/// peer can make the close of a TCP socket wait for any time (SO_LINGER).
void closeWithoutLinger(FileDescriptor descriptor) noexcept;

/// Closes descriptors on a thread of its own, because a peer can send a descriptor whose close takes any
/// time. The thread starts with the first descriptor. Not thread-safe: one thread at a time.
class DescriptorCloser {
  public:
    DescriptorCloser() noexcept;
    DescriptorCloser(const DescriptorCloser&) = delete;
    DescriptorCloser& operator=(const DescriptorCloser&) = delete;

    /// Does not wait for the thread, which ends when it has closed everything.
    ~DescriptorCloser();

    /// Closes the descriptor soon. Any number can wait: the process's limit of descriptors is the only one. Without
    /// memory or a thread it is closed at once by closeWithoutLinger.
    void close(FileDescriptor descriptor) noexcept;

  private:
    struct Queue;

    void enqueue(FileDescriptor& descriptor);
    static void run(const std::shared_ptr<Queue>& queue);

    std::shared_ptr<Queue> queue_;  // null before the first descriptor
};

}  // namespace portability
