#include "events/ReceivedBlock.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <new>

namespace portability {

std::shared_ptr<const ReceivedBlock> ReceivedBlock::map(FileDescriptor file, size_t smallest,
                                                        size_t largest) {
    // Only a shared-memory file has seals; a file that could shrink under the mapping would kill the reader.
    const int seals = fcntl(file.get(), F_GET_SEALS);
    if (seals < 0 || (seals & F_SEAL_SHRINK) == 0) return nullptr;
    struct stat status;
    if (fstat(file.get(), &status) != 0 || status.st_size < 0) return nullptr;
    const auto length = static_cast<uint64_t>(status.st_size);
    if (length == 0 || length < smallest || length > largest) return nullptr;
    const auto size = static_cast<size_t>(length);
    void* data = mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
    if (data == MAP_FAILED) return nullptr;
    auto* block = new (std::nothrow) ReceivedBlock(static_cast<const uint8_t*>(data), size);
    if (block == nullptr) munmap(data, size);
    return std::shared_ptr<const ReceivedBlock>(block);
}

ReceivedBlock::~ReceivedBlock() {
    munmap(const_cast<uint8_t*>(data_), size_);
}

}  // namespace portability
