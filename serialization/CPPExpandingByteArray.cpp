#include "serialization/CPPExpandingByteArray.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace dovrel {
namespace {

constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();

}  // namespace

CPPExpandingByteArray::~CPPExpandingByteArray() = default;

void CPPExpandingByteArray::setByte(uint32_t index, uint8_t value) {
    if (index >= size_ && (index == kLargest || !grow(index + 1, index))) return;
    data_[index] = value;
}

void CPPExpandingByteArray::writeBytes(uint32_t offset, const void* source, uint32_t length) {
    if (length > kLargest - offset) return;
    const uint32_t end = offset + length;
    if (end > size_ && !growBesides(source, end, offset)) return;
    if (length != 0) std::memmove(data_ + offset, source, length);
}

void CPPExpandingByteArray::copyFrom(uint32_t offset, const CPPByteArray& source, uint32_t length,
                                     uint32_t sourceOffset) {
    if (length > kLargest - offset) return;
    const uint32_t available = sourceOffset < source.getSize() ? source.getSize() - sourceOffset : 0;
    const uint32_t count = std::min(length, available);
    const uint32_t end = offset + length;
    if (end > size_ && !grow(end, count == length ? offset : end)) return;
    if (count != 0) std::memmove(data_ + offset, source.data() + sourceOffset, count);
}

bool CPPExpandingByteArray::growBesides(const void*& source, uint32_t newSize, uint32_t fillEnd) {
    const auto from = reinterpret_cast<uintptr_t>(source) - reinterpret_cast<uintptr_t>(data_);
    const bool inside = from < size_;
    if (!grow(newSize, fillEnd)) return false;
    if (inside) source = data_ + from;
    return true;
}

bool CPPExpandingByteArray::grow(uint32_t newSize, uint32_t fillEnd) {
    const uint32_t oldSize = size_;
    if (!reallocate(newSize)) return false;
    if (fillEnd > oldSize) std::memset(data_ + oldSize, 0, fillEnd - oldSize);
    return true;
}

}  // namespace dovrel
