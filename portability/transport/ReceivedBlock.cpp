#include "portability/transport/ReceivedBlock.h"

#include <sys/mman.h>

#include <new>

#include "portability/transport/SharedFile.h"

namespace portability {

std::shared_ptr<const ReceivedBlock> ReceivedBlock::map(FileDescriptor file, size_t smallest,
                                                        size_t largest) {
    uint64_t length = 0;
    if (!isSealedSharedFile(file, length) || length == 0 || length < smallest || length > largest)
        return nullptr;
    const auto size = static_cast<size_t>(length);
    void* data = mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (data == MAP_FAILED) return nullptr;
    auto* block = new (std::nothrow) ReceivedBlock(static_cast<const uint8_t*>(data), size);
    if (block == nullptr) munmap(data, size);
    try {
        return std::shared_ptr<const ReceivedBlock>(block);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

ReceivedBlock::~ReceivedBlock() {
    munmap(const_cast<uint8_t*>(data_), size_);
}

}  // namespace portability
