// The storage of an Apple event. Private to the layer.
#pragma once

#include <CoreServices/AppleEvents.h>
#include <sys/types.h>

#include <array>
#include <memory>

#include "portability/appleevents/DescriptorStorage.h"
#include "portability/appleevents/EventImage.h"
#include "portability/transport/ImageMemory.h"

namespace portability {

/// How an event reached its handler. These facts are attributes of the event, though its image does not hold
/// them.
struct Delivery {
    pid_t sender = 0;
    AEEventSource source = kAEUnknownSource;
    AESendMode mode = 0;
    SInt32 timeOutInTicks = 0;
};

/// A parameter or an attribute: its type and its bytes, which stay in place until the event is changed. A
/// value that no image holds is in the object itself, so it is not to be copied.
struct EventValue {
    EventValue() = default;
    EventValue(const EventValue&) = delete;
    EventValue& operator=(const EventValue&) = delete;

    DescType type = typeNull;
    const uint8_t* data = nullptr;
    size_t size = 0;
    std::array<uint8_t, 4> computed{};
};

/// Parameters and attributes by keyword. One thread at a time.
class EventStorage final : public DescriptorStorage {
  public:
    /// An event without anything.
    EventStorage() = default;

    /// An event that came in. Its image is whole (isWholeImage) and stays in place as ImageMemory says.
    EventStorage(const uint8_t* image, size_t size, std::shared_ptr<const void> keeper);

    /// Copies an image that is whole; throws std::bad_alloc.
    static std::unique_ptr<EventStorage> copyOf(const uint8_t* image, size_t size);

    /// Makes the facts of its delivery attributes of the event.
    void setDelivery(const Delivery& delivery);

    const ImageMemory& image() const { return image_; }

    /// Finds a value; false when the event has none of that keyword.
    bool find(ItemKind kind, AEKeyword keyword, EventValue& value) const;

    /// Stores a copy of the bytes in place of the value of that keyword. On memFullErr (too large, too many
    /// values, no memory) nothing has changed.
    OSErr put(ItemKind kind, AEKeyword keyword, DescType type, const void* data, size_t size);

    /// Remembers that the parameter was read, for keyMissedKeywordAttr.
    void noteRead(AEKeyword parameter) const;

    /// An attribute of four bytes, 0 when the event has none of that keyword and that size.
    UInt32 fourBytes(AEKeyword attribute) const;

  private:
    EventStorage* asEvent() override { return this; }
    bool compute(AEKeyword attribute, EventValue& value) const;
    bool firstUnread(UInt32& keyword) const;

    ImageMemory image_;
    Delivery delivery_;
    bool delivered_ = false;
    mutable uint64_t read_ = 0;  // one bit per item; the items behind the 64th count as read
};

}  // namespace portability
