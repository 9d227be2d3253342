#include <CoreServices/AEDataModel.h>
#include <CoreServices/MacErrors.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <new>

#include "portability/appleevents/Coercion.h"
#include "portability/appleevents/DescriptorStorage.h"
#include "portability/appleevents/EventStorage.h"

using namespace portability;

namespace {

bool isUsable(const void* data, Size size) {
    return size >= 0 && (data != nullptr || size == 0);
}

void setDescriptor(AEDesc* descriptor, DescType type, DescriptorStorage* storage) {
    descriptor->descriptorType = type;
    descriptor->dataHandle = storage->handle();
}

// Returns the next return ID, which identifies an event of this process and is copied into its reply. Return
// IDs start at 1.
AEReturnID nextReturnID() {
    static std::atomic<uint16_t> last{0};
    const auto next = static_cast<uint16_t>(last.fetch_add(1, std::memory_order_relaxed) & 0x7FFF);
    return static_cast<AEReturnID>(next == 0x7FFF ? 1 : next + 1);
}

OSErr putValue(AppleEvent* descriptor, ItemKind kind, AEKeyword keyword, DescType type, const void* data,
               Size size) {
    EventStorage* event = DescriptorStorage::getEvent(descriptor);
    if (event == nullptr) return errAENotAEDesc;
    if (!isUsable(data, size)) return paramErr;
    return event->put(kind, keyword, type, data, static_cast<size_t>(size));
}

OSErr getValue(const AppleEvent* descriptor, ItemKind kind, AEKeyword keyword, DescType desired,
               DescType* actualType, void* buffer, Size room, Size* actualSize) {
    const EventStorage* event = DescriptorStorage::getEvent(descriptor);
    if (event == nullptr) return errAENotAEDesc;
    if (room < 0) return paramErr;
    EventValue value;
    if (!event->find(kind, keyword, value)) return errAEDescNotFound;
    CoercedValue coerced;
    if (desired != typeWildCard && desired != value.type) {
        if (!coerce(value.type, value.data, value.size, desired, coerced)) return errAECoercionFail;
        value.type = desired;
        value.data = coerced.bytes.data();
        value.size = coerced.size;
    }
    const size_t copied = std::min(value.size, static_cast<size_t>(room));
    if (buffer != nullptr && copied != 0) std::memcpy(buffer, value.data, copied);
    if (actualType != nullptr) *actualType = value.type;
    if (actualSize != nullptr) *actualSize = static_cast<Size>(value.size);
    if (kind == ItemKind::parameter) event->noteRead(value);
    return noErr;
}

}  // namespace

OSErr AECreateDesc(DescType typeCode, const void* dataPtr, Size dataSize, AEDesc* result) {
    if (result == nullptr) return paramErr;
    AEInitializeDesc(result);
    if (!isUsable(dataPtr, dataSize)) return paramErr;
    if (typeCode == typeNull) return noErr;
    try {
        setDescriptor(result, typeCode, new ByteStorage(dataPtr, static_cast<size_t>(dataSize)));
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
    return noErr;
}

OSErr AEDisposeDesc(AEDesc* theAEDesc) {
    if (theAEDesc == nullptr) return paramErr;
    delete DescriptorStorage::of(theAEDesc);
    AEInitializeDesc(theAEDesc);
    return noErr;
}

void AEInitializeDesc(AEDesc* desc) {
    desc->descriptorType = typeNull;
    desc->dataHandle = nullptr;
}

OSErr AECreateAppleEvent(AEEventClass theAEEventClass, AEEventID theAEEventID, const AEAddressDesc* target,
                         AEReturnID returnID, AETransactionID transactionID, AppleEvent* result) {
    if (result == nullptr) return paramErr;
    AEInitializeDesc(result);
    std::unique_ptr<EventStorage> event(new (std::nothrow) EventStorage);
    if (event == nullptr) return memFullErr;
    const SInt32 usedReturnID = returnID == kAutoGenerateReturnID ? nextReturnID() : returnID;
    OSErr error = event->addNumbers({{keyEventClassAttr, typeType, theAEEventClass},
                                     {keyEventIDAttr, typeType, theAEEventID},
                                     {keyReturnIDAttr, typeSInt32, static_cast<UInt32>(usedReturnID)},
                                     {keyTransactionIDAttr, typeSInt32, static_cast<UInt32>(transactionID)}});
    if (const ByteStorage* address = DescriptorStorage::getBytes(target);
        address != nullptr && error == noErr) {
        error = event->put(ItemKind::attribute, keyAddressAttr, target->descriptorType, address->data(),
                           address->size());
    }
    if (error == noErr) setDescriptor(result, typeAppleEvent, event.release());
    return error;
}

OSErr AEPutParamPtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode, const void* dataPtr,
                    Size dataSize) {
    return putValue(theAppleEvent, ItemKind::parameter, theAEKeyword, typeCode, dataPtr, dataSize);
}

OSErr AEPutAttributePtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                        const void* dataPtr, Size dataSize) {
    return putValue(theAppleEvent, ItemKind::attribute, theAEKeyword, typeCode, dataPtr, dataSize);
}

OSErr AEGetParamPtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                    DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize) {
    return getValue(theAppleEvent, ItemKind::parameter, theAEKeyword, desiredType, actualType, dataPtr,
                    maximumSize, actualSize);
}

OSErr AEGetAttributePtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                        DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize) {
    return getValue(theAppleEvent, ItemKind::attribute, theAEKeyword, desiredType, actualType, dataPtr,
                    maximumSize, actualSize);
}

OSErr AESizeOfParam(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType* typeCode,
                    Size* dataSize) {
    return getValue(theAppleEvent, ItemKind::parameter, theAEKeyword, typeWildCard, typeCode, nullptr, 0,
                    dataSize);
}

Size AEGetDescDataSize(const AEDesc* theAEDesc) {
    const ByteStorage* bytes = DescriptorStorage::getBytes(theAEDesc);
    return bytes == nullptr ? 0 : static_cast<Size>(bytes->size());
}

OSErr AEGetDescData(const AEDesc* theAEDesc, void* dataPtr, Size maximumSize) {
    const ByteStorage* bytes = DescriptorStorage::getBytes(theAEDesc);
    if (bytes == nullptr)
        return DescriptorStorage::of(theAEDesc) == nullptr ? errAEDescIsNull : errAEWrongDataType;
    if (!isUsable(dataPtr, maximumSize)) return paramErr;
    const size_t copied = std::min(bytes->size(), static_cast<size_t>(maximumSize));
    if (copied != 0) std::memcpy(dataPtr, bytes->data(), copied);
    return noErr;
}
