#include "InterProcessCommunication/IPC_via_AE.h"

#include <limits>
#include <utility>

namespace dovrel {

namespace {

// The address is made of 8 bytes, of which the platform takes the four of the signature.
constexpr Size kTargetSize = 8;
constexpr char kTarget[kTargetSize] = "RBJT";

}  // namespace

// Where the address cannot be made it stays null, and the events to it fail when they are made or sent.
IPC_via_AE::IPC_via_AE() {
    AECreateDesc(typeApplSignature, kTarget, kTargetSize, &target_);
}

IPC_via_AE::~IPC_via_AE() {
    AEDisposeDesc(&target_);
}

int32_t IPC_via_AE::CreateEvent(AEEventClass eventClass, AEEventID eventID, AppleEvent* event) const {
    return AECreateAppleEvent(eventClass, eventID, &target_, kAutoGenerateReturnID, kAnyTransactionID, event);
}

int32_t IPC_via_AE::PutData(AppleEvent* event, const uint8_t* bytes, uint32_t length) const {
    const auto size = static_cast<Size>(length);
    // In 32 bits the platform's size ends at half of what a length can be.
    if (size < 0) return memFullErr;
    return AEPutParamPtr(event, keyDirectObject, typeChar, bytes, size);
}

int32_t IPC_via_AE::GetData(const AppleEvent* event, std::unique_ptr<uint8_t[]>& buffer,
                            uint32_t& length) const {
    buffer.reset();
    length = 0;
    Size size = 0;
    OSErr error = AEGetParamPtr(event, keyDirectObject, typeChar, nullptr, nullptr, 0, &size);
    if (error != noErr) return error;
    if (size < 1) return noErr;
    if (static_cast<uint64_t>(size) > std::numeric_limits<uint32_t>::max()) return memFullErr;

    std::unique_ptr<uint8_t[]> received(new uint8_t[static_cast<std::size_t>(size)]);
    Size receivedSize = 0;
    error = AEGetParamPtr(event, keyDirectObject, typeChar, nullptr, received.get(), size, &receivedSize);
    if (error != noErr) return error;
    // The sender may share the memory of the event and change it in between.
    if (receivedSize != size) return errAECorruptData;
    buffer = std::move(received);
    length = static_cast<uint32_t>(size);
    return noErr;
}

}  // namespace dovrel
