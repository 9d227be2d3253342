#include "serialization/CPPByteArray.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "serialization/StreamLength.h"

namespace dovrel {
namespace {

struct FreeBlock {
    void operator()(uint8_t* block) const { std::free(block); }
};
using Block = std::unique_ptr<uint8_t, FreeBlock>;

// Returns null if `length` is 0 and after an allocation failure. The caller tells the two apart
// by the length.
Block newBlock(uint32_t length) {
    return Block(length == 0 ? nullptr : static_cast<uint8_t*>(std::malloc(length)));
}

// memcpy must not be called with null, not even for 0 bytes.
void copyBytes(uint8_t* destination, const void* source, uint32_t length) {
    if (length != 0) std::memcpy(destination, source, length);
}

}  // namespace

CPPByteArray::CPPByteArray(const CPPByteArray& other) {
    assign(other);
}

CPPByteArray::CPPByteArray(CPPByteArray&& other) noexcept {
    swap(other);
}

CPPByteArray& CPPByteArray::operator=(const CPPByteArray& other) {
    if (this != &other && other.size_ != 0) assign(other);
    return *this;
}

CPPByteArray::~CPPByteArray() {
    std::free(data_);
}

void CPPByteArray::setByte(uint32_t index, uint8_t value) {
    if (index < size_) data_[index] = value;
}

void CPPByteArray::writeBytes(uint32_t offset, const void* source, uint32_t length) {
    if (offset >= size_) return;
    const uint32_t count = std::min(length, size_ - offset);
    if (count != 0) std::memmove(data_ + offset, source, count);
}

void CPPByteArray::copyFrom(uint32_t offset, const CPPByteArray& source, uint32_t length,
                            uint32_t sourceOffset) {
    if (offset >= size_ || sourceOffset >= source.size_) return;
    const uint32_t count = std::min({length, size_ - offset, source.size_ - sourceOffset});
    std::memmove(data_ + offset, source.data_ + sourceOffset, count);
}

void CPPByteArray::assign(const CPPByteArray& other) {
    set(other.data_, other.size_);
}

void CPPByteArray::set(const void* source, uint32_t length) {
    Block block = newBlock(length);
    if (block == nullptr && length != 0) return;
    copyBytes(block.get(), source, length);
    adopt(block.release(), length);
}

void CPPByteArray::setOrThrow(const void* source, uint32_t length) {
    Block block = newBlock(length);
    if (block == nullptr && length != 0) throw std::bad_alloc();
    copyBytes(block.get(), source, length);
    adopt(block.release(), length);
}

void CPPByteArray::requireSize(uint32_t size) const {
    if (size_ != size) throw std::bad_alloc();
}

void CPPByteArray::setFilled(uint32_t length, uint8_t fillByte) {
    Block block = newBlock(length);
    if (block == nullptr && length != 0) return;
    if (length != 0) std::memset(block.get(), fillByte, length);
    adopt(block.release(), length);
}

void CPPByteArray::setFromPart(const CPPByteArray& source, uint32_t offset, uint32_t length) {
    Block block = newBlock(length);
    if (block == nullptr && length != 0) return;
    const uint32_t available = offset < source.size_ ? source.size_ - offset : 0;
    const uint32_t count = std::min(length, available);
    if (count != 0) std::memcpy(block.get(), source.data_ + offset, count);
    // Without this the rest would contain old heap data, which might then be sent to the server.
    if (count != length) std::memset(block.get() + count, 0, length - count);
    adopt(block.release(), length);
}

void CPPByteArray::keepPart(uint32_t offset, uint32_t length) noexcept {
    if (length == 0) {
        clear();
        return;
    }
    std::memmove(data_, data_ + offset, length);
    size_ = length;
}

bool CPPByteArray::insertAtStart(const void* source, uint32_t length) {
    const uint32_t oldSize = size_;
    if (length > std::numeric_limits<uint32_t>::max() - oldSize || !reallocate(oldSize + length))
        return false;
    if (oldSize != 0) std::memmove(data_ + length, data_, oldSize);
    copyBytes(data_, source, length);
    return true;
}

void CPPByteArray::swap(CPPByteArray& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
}

void CPPByteArray::readBytes(uint32_t offset, void* destination, uint32_t length) const {
    if (offset >= size_) return;
    const uint32_t count = std::min(length, size_ - offset);
    if (count != 0) std::memmove(destination, data_ + offset, count);
}

void CPPByteArray::resize(uint32_t newSize, uint8_t fillByte) {
    const uint32_t oldSize = size_;
    if (reallocate(newSize) && newSize > oldSize) std::memset(data_ + oldSize, fillByte, newSize - oldSize);
}

int CPPByteArray::compare(const CPPByteArray& other) const {
    return compare(other.data_, other.size_);
}

int CPPByteArray::compare(const void* bytes, uint32_t length) const {
    const uint32_t common = std::min(size_, length);
    const int difference = common == 0 ? 0 : std::memcmp(data_, bytes, common);
    if (difference != 0) return difference < 0 ? -1 : 1;
    if (size_ == length) return 0;
    return size_ < length ? -1 : 1;
}

void CPPByteArray::loadFromStream(std::istream& stream) {
    const std::optional<uint64_t> length = lengthFromStart(stream);
    if (!length) {
        clear();
    } else if (*length <= std::numeric_limits<uint32_t>::max()) {
        loadFromStream(stream, static_cast<uint32_t>(*length));
    }
}

void CPPByteArray::loadFromStream(std::istream& stream, uint32_t length) {
    const auto wanted = static_cast<std::streamsize>(length);
    // On a 32-bit system std::streamsize is too small for lengths of 2 GiB and more.
    if (wanted < 0) return;
    Block block = newBlock(length);
    if (block == nullptr && length != 0) return;
    stream.clear();
    stream.read(reinterpret_cast<char*>(block.get()), wanted);
    const auto count = static_cast<uint32_t>(stream.gcount());
    if (count != length) std::memset(block.get() + count, 0, length - count);
    adopt(block.release(), length);
}

bool CPPByteArray::clear() {
    adopt(nullptr, 0);
    return true;
}

void CPPByteArray::adopt(uint8_t* block, uint32_t length) {
    std::free(data_);
    data_ = block;
    size_ = length;
}

}  // namespace dovrel
