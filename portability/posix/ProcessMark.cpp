#include "portability/posix/ProcessMark.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>

namespace portability {

namespace {

using Mark = std::atomic<uint32_t>;

// A page of memory that the kernel fills with zeros in a forked process. It is never given back: while the
// process ends, other threads may still be running.
class MarkPage {
  public:
    MarkPage() {
        void* page = mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (page == MAP_FAILED) return;
        if (madvise(page, kSize, MADV_WIPEONFORK) == 0) {
            mark_ = static_cast<Mark*>(page);
        } else {
            munmap(page, kSize);
        }
    }

    uint32_t mark() {
        // Not getpid(), which calls processMark().
        if (mark_ == nullptr) return static_cast<uint32_t>(syscall(SYS_getpid));
        const uint32_t mark = mark_->load(std::memory_order_relaxed);
        return mark != 0 ? mark : makeMark();
    }

  private:
    // The counter is not in this page, so that a forked process continues with the number after its parent's.
    uint32_t makeMark() {
        uint32_t unset = 0;
        mark_->compare_exchange_strong(unset, ++last_);
        return mark_->load();
    }

    static constexpr size_t kSize = 1;  // rounded up to a page
    Mark* mark_ = nullptr;
    std::atomic<uint32_t> last_{0};
};

MarkPage page;

}  // namespace

uint32_t processMark() {
    return page.mark();
}

}  // namespace portability
