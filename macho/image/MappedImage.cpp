#include "macho/image/MappedImage.h"

#include <sys/mman.h>
#include <unistd.h>

namespace dovrel::macho {

namespace {

int toAccess(const Segment& segment) {
    const auto flag = [&](Protection protection, int access) {
        return (segment.protection & protection) != 0 ? access : 0;
    };
    return flag(kReadable, PROT_READ) | flag(kWritable, PROT_WRITE) | flag(kExecutable, PROT_EXEC);
}

}  // namespace

MappedImage::MappedImage(const MachOFile& file) : size_(static_cast<size_t>(file.memorySize())) {
    void* const memory = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw FormatError("there is no memory for the image");
    base_ = static_cast<uint8_t*>(memory);
    for (const Segment& segment : file.segments()) {
        const std::vector<uint8_t> bytes = file.bytes(segment).all();
        if (!bytes.empty()) std::memcpy(base_ + segment.address, bytes.data(), bytes.size());
    }
}

MappedImage::~MappedImage() {
    if (!isKept_) munmap(base_, size_);
}

void MappedImage::protect(const MachOFile& file) {
    const auto page = static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
    for (const Segment& segment : file.segments()) {
        if (segment.memorySize == 0) continue;
        if (segment.address % page != 0)
            throw FormatError("segment " + segment.name + " begins inside a page");
        if (mprotect(base_ + segment.address, static_cast<size_t>(segment.memorySize), toAccess(segment)) !=
            0)
            throw FormatError("segment " + segment.name + " cannot be protected");
    }
}

bool MappedImage::contains(const void* address) const {
    return reinterpret_cast<uintptr_t>(address) - reinterpret_cast<uintptr_t>(base_) < size_;
}

uint8_t* MappedImage::at(uint64_t address, size_t size) const {
    if (size > size_ || address > size_ - size) throw FormatError("an address lies outside the image");
    return base_ + address;
}

uintptr_t MappedImage::word(uint64_t address) const {
    uintptr_t word;
    std::memcpy(&word, at(address, sizeof word), sizeof word);
    return word;
}

void MappedImage::setWord(uint64_t address, uintptr_t word) {
    std::memcpy(at(address, sizeof word), &word, sizeof word);
}

}  // namespace dovrel::macho
