#include "portability/transport/Mailbox.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cstring>
#include <new>

#include "portability/transport/SharedFile.h"

namespace portability {

static_assert(std::atomic<uint32_t>::is_always_lock_free,
              "a lock would not be shared with the other process");

Mailbox::Memory* Mailbox::map(const FileDescriptor& file) {
    void* memory = mmap(nullptr, sizeof(Memory), PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    return memory == MAP_FAILED ? nullptr : static_cast<Memory*>(memory);
}

std::unique_ptr<Mailbox> Mailbox::create(FileDescriptor& file) {
    FileDescriptor made = makeSharedFile(sizeof(Memory));
    Memory* memory = made ? map(made) : nullptr;
    if (memory == nullptr) return nullptr;
    file = std::move(made);
    return std::unique_ptr<Mailbox>(new (std::nothrow) Mailbox(memory, Side::sender));
}

std::unique_ptr<Mailbox> Mailbox::open(FileDescriptor file) {
    uint64_t size = 0;
    if (!isSealedSharedFile(file, size) || size != sizeof(Memory)) return nullptr;
    Memory* memory = map(file);
    if (memory == nullptr) return nullptr;
    return std::unique_ptr<Mailbox>(new (std::nothrow) Mailbox(memory, Side::receiver));
}

Mailbox::Mailbox(Memory* memory, Side side)
    : memory_(memory),
      own_(memory->halves[side == Side::sender ? 0 : 1]),
      other_(memory->halves[side == Side::sender ? 1 : 0]) {
    noteProcessor();
}

Mailbox::~Mailbox() {
    munmap(memory_, sizeof(Memory));
}

void Mailbox::noteProcessor() {
    own_.processor.store(sched_getcpu(), std::memory_order_relaxed);
}

bool Mailbox::isOtherElsewhere() const {
    return other_.processor.load(std::memory_order_relaxed) != sched_getcpu();
}

void Mailbox::setLooking(bool looking) {
    if (looking == isLooking_) return;  // the store is a memory barrier
    isLooking_ = looking;
    noteProcessor();
    own_.looking.store(looking ? 1 : 0);
}

bool Mailbox::isOtherLooking() const {
    return other_.looking.load() == 1;
}

void Mailbox::post(const FrameHeader* header, const uint8_t* image, size_t imageSize) {
    uint32_t size = 0;
    if (header != nullptr) {
        std::memcpy(own_.frame, header, sizeof *header);
        if (imageSize != 0) std::memcpy(own_.frame + sizeof *header, image, imageSize);
        size = static_cast<uint32_t>(sizeof *header + imageSize);
    }
    noteProcessor();
    own_.size.store(size, std::memory_order_relaxed);
    own_.posted.store(++posted_);
}

bool Mailbox::take(Mail& mail) {
    const uint32_t posted = other_.posted.load();
    if (posted == taken_) return false;
    taken_ = posted;
    own_.taken.store(posted, std::memory_order_release);
    mail.bytes = other_.frame;
    mail.size = other_.size.load(std::memory_order_relaxed);
    return true;
}

bool Mailbox::wasTaken() const {
    return other_.taken.load() == posted_;
}

}  // namespace portability
