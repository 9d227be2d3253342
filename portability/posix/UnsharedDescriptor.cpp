#include "portability/posix/UnsharedDescriptor.h"

#include <fcntl.h>
#include <pthread.h>
#include <time.h>

#include <array>
#include <atomic>
#include <mutex>

namespace portability {

namespace {

constexpr int kFree = -1;
constexpr int kAttempts = 10'000;
constexpr timespec kPause{0, 100'000};

// Locked by ForkPause and while the process forks.
std::mutex forkMutex;

// The numbers of all unshared descriptors. An array of atomics, because a forked process reads it, in which
// no other thread can complete a change.
std::array<std::atomic<int>, 256> descriptors;

bool lockForkMutex() {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (forkMutex.try_lock()) return true;
        nanosleep(&kPause, nullptr);
    }
    return false;
}

bool replaceEntry(int before, int after) {
    for (std::atomic<int>& entry : descriptors) {
        int expected = before;
        if (entry.compare_exchange_strong(expected, after)) return true;
    }
    return false;
}

// The number must stay in use, because its owner will close it.
void replaceByNullDevice(int descriptor) {
    close(descriptor);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (null < 0 || null == descriptor) return;
    dup3(null, descriptor, O_CLOEXEC);
    close(null);
}

bool isForkMutexHeld = false;

void beforeFork() {
    isForkMutexHeld = lockForkMutex();
}

void releaseForkMutex() {
    if (isForkMutexHeld) forkMutex.unlock();
}

void inForkedProcess() {
    const int kept = errno;
    for (std::atomic<int>& entry : descriptors) {
        const int descriptor = entry.exchange(kFree);
        if (descriptor >= 0) replaceByNullDevice(descriptor);
    }
    errno = kept;
    releaseForkMutex();
}

// The C library removes the handlers when it unloads this code.
[[maybe_unused]] const bool isPrepared = [] {
    for (std::atomic<int>& entry : descriptors)
        entry = kFree;
    return pthread_atfork(beforeFork, releaseForkMutex, inForkedProcess) == 0;
}();

}  // namespace

ForkPause::ForkPause() noexcept : held_(lockForkMutex()) {}

ForkPause::~ForkPause() {
    if (held_) forkMutex.unlock();
}

UnsharedDescriptor& UnsharedDescriptor::operator=(UnsharedDescriptor&& other) noexcept {
    if (this == &other) return *this;
    close();
    descriptor_ = std::move(other.descriptor_);
    return *this;
}

bool UnsharedDescriptor::take(FileDescriptor descriptor) {
    if (descriptor_) replaceEntry(descriptor_.get(), kFree);
    descriptor_ = std::move(descriptor);
    if (!descriptor_ || replaceEntry(kFree, descriptor_.get())) return true;
    descriptor_.reset();
    errno = EMFILE;
    return false;
}

void UnsharedDescriptor::close() noexcept {
    if (!descriptor_) return;
    const ForkPause pause;
    replaceEntry(descriptor_.get(), kFree);
    descriptor_.reset();
}

}  // namespace portability
