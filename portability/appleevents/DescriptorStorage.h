// The object to which a descriptor's handle refers. Private to the layer.
#pragma once

#include <CoreServices/AEDataModel.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace portability {

class ByteStorage;
class EventStorage;

/// The storage of a descriptor: plain bytes or an event. The descriptor owns it, and AEDisposeDesc frees it.
class DescriptorStorage {
  public:
    DescriptorStorage(const DescriptorStorage&) = delete;
    DescriptorStorage& operator=(const DescriptorStorage&) = delete;
    virtual ~DescriptorStorage() = default;

    /// Returns the storage of a descriptor. Returns null for a null descriptor and for a null pointer.
    static DescriptorStorage* of(const AEDesc* descriptor);

    /// The same for storage of one kind. Both return null if the storage is of the other kind.
    static const ByteStorage* getBytes(const AEDesc* descriptor);
    static EventStorage* getEvent(const AEDesc* descriptor);

    /// Returns the handle for the descriptor.
    AEDataStorage handle() { return reinterpret_cast<AEDataStorage>(this); }

  protected:
    DescriptorStorage() = default;

  private:
    virtual const ByteStorage* asBytes() const { return nullptr; }
    virtual EventStorage* asEvent() { return nullptr; }
};

/// Plain bytes, which never change.
class ByteStorage final : public DescriptorStorage {
  public:
    /// Copies the bytes. Throws std::bad_alloc.
    ByteStorage(const void* data, size_t size);

    const uint8_t* data() const { return data_.get(); }
    size_t size() const { return size_; }

  private:
    const ByteStorage* asBytes() const override { return this; }

    std::unique_ptr<uint8_t[]> data_;
    size_t size_;
};

}  // namespace portability
