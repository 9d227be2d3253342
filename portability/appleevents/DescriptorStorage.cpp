#include "portability/appleevents/DescriptorStorage.h"

#include <cstring>

namespace portability {

DescriptorStorage* DescriptorStorage::of(const AEDesc* descriptor) {
    if (descriptor == nullptr) return nullptr;
    return reinterpret_cast<DescriptorStorage*>(descriptor->dataHandle);
}

const ByteStorage* DescriptorStorage::getBytes(const AEDesc* descriptor) {
    const DescriptorStorage* storage = of(descriptor);
    return storage == nullptr ? nullptr : storage->asBytes();
}

EventStorage* DescriptorStorage::getEvent(const AEDesc* descriptor) {
    DescriptorStorage* storage = of(descriptor);
    return storage == nullptr ? nullptr : storage->asEvent();
}

ByteStorage::ByteStorage(const void* data, size_t size) : data_(new uint8_t[size]), size_(size) {
    if (size != 0) std::memcpy(data_.get(), data, size);
}

}  // namespace portability
