#include "portability/appleevents/EventStorage.h"

#include <CoreServices/MacErrors.h>

#include <cstring>
#include <new>

namespace portability {

namespace {

constexpr uint32_t kMarkedItems = 64;
constexpr AESendMode kReplyModeMask = 0x03;
constexpr AESendMode kInteractionMask = 0x30;

template <class Number>
void setComputed(EventValue& value, DescType type, Number number) {
    static_assert(sizeof number <= sizeof value.computed, "a computed value is small");
    std::memcpy(value.computed.data(), &number, sizeof number);
    value.type = type;
    value.data = value.computed.data();
    value.size = sizeof number;
}

}  // namespace

EventStorage::EventStorage(const uint8_t* image, size_t size, std::shared_ptr<const void> keeper)
    : image_(image, size, std::move(keeper)), isWhole_(index_.read(image, size)) {}

std::unique_ptr<EventStorage> EventStorage::makeCopy(const uint8_t* image, size_t size) {
    auto copy = std::make_unique<EventStorage>();
    uint8_t* place = copy->image_.append(size);
    if (place == nullptr) throw std::bad_alloc();
    if (size != 0) std::memcpy(place, image, size);
    copy->isWhole_ = copy->index_.read(place, size);
    return copy;
}

void EventStorage::setDelivery(const Delivery& delivery) {
    delivery_ = delivery;
    delivered_ = true;
}

bool EventStorage::find(ItemKind kind, AEKeyword keyword, EventValue& value) const {
    if (kind == ItemKind::attribute && compute(keyword, value)) return true;
    ImageItem item;
    if (!findItem(kind, keyword, item)) return false;
    value.type = item.header.type;
    value.data = item.data;
    value.size = item.header.size;
    value.index = item.index;
    return true;
}

// Computes the attributes that are not in the image. A received event contains its sender's address instead
// of the target's, because the receiver knows its own address.
bool EventStorage::compute(AEKeyword attribute, EventValue& value) const {
    UInt32 unread;
    switch (attribute) {
        case keyMissedKeywordAttr:
            if (!firstUnread(unread)) return false;
            setComputed(value, typeKeyword, unread);
            return true;
        case keyEventSourceAttr:
            setComputed(value, typeSInt16, static_cast<SInt16>(delivery_.source));
            return delivered_;
        case keyAddressAttr:
        case keyOriginalAddressAttr:
            setComputed(value, typeKernelProcessID, delivery_.sender);
            return delivered_;
        case keySenderPIDAttr:
            setComputed(value, typeSInt32, delivery_.sender);
            return delivered_;
        case keyReplyRequestedAttr:
            setComputed(value, typeBoolean,
                        static_cast<Boolean>((delivery_.mode & kReplyModeMask) != kAENoReply));
            return delivered_;
        case keyInteractLevelAttr:
            setComputed(value, typeEnumerated, delivery_.mode & kInteractionMask);
            return delivered_;
        case keyTimeoutAttr:
            setComputed(value, typeSInt32, delivery_.timeOutInTicks);
            return delivered_;
        default:
            return false;
    }
}

bool EventStorage::firstUnread(UInt32& keyword) const {
    ImageWalker walker(image_.data(), image_.size());
    ImageItem item;
    while (walker.next(item) && item.index < kMarkedItems) {
        const bool isParameter = item.header.kind == static_cast<uint32_t>(ItemKind::parameter);
        if (!isParameter || (read_ >> item.index & 1) != 0) continue;
        keyword = item.header.keyword;
        return true;
    }
    return false;
}

void EventStorage::noteRead(const EventValue& parameter) const {
    if (parameter.index < kMarkedItems) read_ |= uint64_t{1} << parameter.index;
}

OSErr EventStorage::addNumbers(std::initializer_list<NumberAttribute> attributes) {
    struct Item {
        ItemHeader header;
        UInt32 number;
        UInt32 padding;
    };
    static_assert(sizeof(Item) == itemSpace(sizeof(UInt32)), "the layout of an item in an image");
    size_t begin = image_.size();
    uint8_t* place = image_.append(attributes.size() * sizeof(Item));
    if (place == nullptr) return memFullErr;
    for (const NumberAttribute& attribute : attributes) {
        const ItemHeader header{static_cast<uint32_t>(attribute.keyword),
                                static_cast<uint32_t>(attribute.type), sizeof attribute.number,
                                static_cast<uint32_t>(ItemKind::attribute)};
        const Item item{header, attribute.number, 0};
        std::memcpy(place, &item, sizeof item);
        index_.add(header, begin);
        place += sizeof item;
        begin += sizeof item;
    }
    return noErr;
}

OSErr EventStorage::put(ItemKind kind, AEKeyword keyword, DescType type, const void* data, size_t size) {
    if (size > kLargestMessage) return memFullErr;
    const ItemHeader header{static_cast<uint32_t>(keyword), static_cast<uint32_t>(type),
                            static_cast<uint32_t>(size), static_cast<uint32_t>(kind)};
    ImageItem item;
    const bool found = findItem(kind, keyword, item);
    if (!found && index_.count() == kMostItems) return memFullErr;

    if (found && item.end - item.begin == itemSpace(size)) {
        uint8_t* image = image_.writable();
        if (image == nullptr) return memFullErr;
        writeItem(image + item.begin, header, data);
        index_.replace(item, header);
        return noErr;
    }
    const size_t end = image_.size();
    uint8_t* place = image_.append(itemSpace(size));
    if (place == nullptr) return memFullErr;
    prepareItem(place, header);
    image_.store(place + sizeof header, static_cast<const uint8_t*>(data), size);
    if (!found) {
        index_.add(header, end);
        return noErr;
    }
    image_.erase(item.begin, item.end - item.begin);
    index_.read(image_.data(), image_.size());
    return noErr;
}

UInt32 EventStorage::imageNumber(AEKeyword attribute) const {
    ImageItem item;
    UInt32 number = 0;
    if (!findItem(ItemKind::attribute, attribute, item) || item.header.size != sizeof number) return 0;
    std::memcpy(&number, item.data, sizeof number);
    return number;
}

}  // namespace portability
