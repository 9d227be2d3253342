#include "portability/transport/DescriptorCloser.h"

#include <sys/socket.h>

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "portability/posix/AllSignalsBlock.h"

namespace portability {

namespace {

constexpr size_t kUsuallyWaiting = 64;

}  // namespace

struct DescriptorCloser::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<FileDescriptor> waiting;
    bool isOver = false;
};

void closeWithoutLinger(FileDescriptor descriptor) noexcept {
    const linger none{0, 0};
    const int kept = errno;
    setsockopt(descriptor.get(), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    errno = kept;
}

DescriptorCloser::DescriptorCloser() noexcept = default;

DescriptorCloser::~DescriptorCloser() {
    if (queue_ == nullptr) return;
    {
        const std::lock_guard<std::mutex> lock(queue_->mutex);
        queue_->isOver = true;
    }
    queue_->changed.notify_all();
}

void DescriptorCloser::close(FileDescriptor descriptor) noexcept {
    if (!descriptor) return;
    try {
        enqueue(descriptor);
    } catch (const std::exception&) {
        // No memory, or no thread.
        closeWithoutLinger(std::move(descriptor));
    }
}

void DescriptorCloser::enqueue(FileDescriptor& descriptor) {
    if (queue_ == nullptr) {
        auto queue = std::make_shared<Queue>();
        queue->waiting.reserve(kUsuallyWaiting);
        const AllSignalsBlock block;
        std::thread([queue] { run(queue); }).detach();
        queue_ = std::move(queue);
    }
    {
        const std::lock_guard<std::mutex> lock(queue_->mutex);
        queue_->waiting.push_back(std::move(descriptor));
    }
    queue_->changed.notify_all();
}

void DescriptorCloser::run(const std::shared_ptr<Queue>& queue) {
    std::unique_lock<std::mutex> lock(queue->mutex);
    for (;;) {
        queue->changed.wait(lock, [&queue] { return queue->isOver || !queue->waiting.empty(); });
        if (queue->waiting.empty()) return;
        FileDescriptor descriptor = std::move(queue->waiting.back());
        queue->waiting.pop_back();
        lock.unlock();
        closeWithoutLinger(std::move(descriptor));
        lock.lock();
    }
}

}  // namespace portability
