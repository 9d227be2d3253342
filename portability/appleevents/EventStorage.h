// The storage of an Apple event. Private to the layer.
#pragma once

#include <CoreServices/AppleEvents.h>
#include <sys/types.h>

#include <array>
#include <initializer_list>
#include <memory>

#include "portability/appleevents/DescriptorStorage.h"
#include "portability/appleevents/EventImage.h"
#include "portability/appleevents/ItemIndex.h"
#include "portability/transport/MessageMemory.h"

namespace portability {

/// Describes how an event reached its handler. These values are attributes of the event, although its image
/// does not contain them.
struct Delivery {
    pid_t sender = 0;
    AEEventSource source = kAEUnknownSource;
    AESendMode mode = 0;
    SInt32 timeOutInTicks = 0;
};

/// The type and the bytes of a parameter or an attribute. The bytes are valid until the event is
/// changed. A computed value, which is not in the image, is stored in this object; therefore the object
/// cannot be copied.
struct EventValue {
    EventValue() = default;
    EventValue(const EventValue&) = delete;
    EventValue& operator=(const EventValue&) = delete;

    DescType type = typeNull;
    const uint8_t* data = nullptr;
    size_t size = 0;
    uint32_t index = 0;  // number of items before this one; meaningless for a computed value
    std::array<uint8_t, 4> computed{};
};

/// An attribute of four bytes.
struct NumberAttribute {
    AEKeyword keyword;
    DescType type;
    UInt32 number;
};

/// Stores the parameters and attributes of an event by keyword. Not thread-safe: one thread at a time.
class EventStorage final : public DescriptorStorage {
  public:
    /// Makes an event without parameters and attributes. User-provided, so that make_unique does not zero-fill
    /// the memory first.
    EventStorage() {}

    /// Makes a received event. Its image must stay valid as MessageMemory requires. Unless isWhole() returns
    /// true, the event must not be used.
    EventStorage(const uint8_t* image, size_t size, std::shared_ptr<const void> keeper);

    /// Does the same with a copy of the image. Throws std::bad_alloc.
    static std::unique_ptr<EventStorage> makeCopy(const uint8_t* image, size_t size);

    /// Returns whether the image with which the event was made is whole (ItemIndex::read).
    bool isWhole() const { return isWhole_; }

    /// Sets the values of the attributes that describe the delivery.
    void setDelivery(const Delivery& delivery);

    const MessageMemory& image() const { return image_; }

    /// Finds a value. Returns false if the event has none with this kind and keyword.
    bool find(ItemKind kind, AEKeyword keyword, EventValue& value) const;

    /// Finds an item of the image. Returns false if there is none with this kind and keyword.
    bool findItem(ItemKind kind, AEKeyword keyword, ImageItem& item) const {
        return index_.find(image_.data(), image_.size(), kind, static_cast<uint32_t>(keyword), item);
    }

    /// Stores a copy of the bytes. Replaces a value with the same kind and keyword. Returns memFullErr, and
    /// changes nothing, if the value is too large, the event has too many values or memory runs out.
    OSErr put(ItemKind kind, AEKeyword keyword, DescType type, const void* data, size_t size);

    /// Adds the attributes, which the event must not have yet. Does less work than put() for each of them.
    /// Returns memFullErr, and changes nothing, if memory runs out.
    OSErr addNumbers(std::initializer_list<NumberAttribute> attributes);

    /// Records that the parameter, which find() found, was read, for keyMissedKeywordAttr.
    void noteRead(const EventValue& parameter) const;

    /// Records that the event's sender gets no reply (AESuspendTheCurrentEvent). isSuspended() returns whether
    /// this was recorded.
    void suspend() const { suspended_ = true; }
    bool isSuspended() const { return suspended_; }

    /// Returns an attribute of four bytes in the image. Returns 0 if there is no attribute with this keyword and
    /// this size.
    UInt32 imageNumber(AEKeyword attribute) const;

  private:
    EventStorage* asEvent() override { return this; }
    bool compute(AEKeyword attribute, EventValue& value) const;
    bool firstUnread(UInt32& keyword) const;

    MessageMemory image_;
    ItemIndex index_;
    bool isWhole_ = true;
    Delivery delivery_;
    bool delivered_ = false;
    mutable bool suspended_ = false;
    mutable uint64_t read_ = 0;  // one bit per item; the items after the 64th count as read
};

}  // namespace portability
