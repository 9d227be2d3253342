#include "InterProcessCommunication/IPC_via_AE.h"

#include <limits>
#include <new>
#include <utility>

namespace dovrel {

namespace {

// The address has 8 bytes. The platform uses only the first four, the signature.
constexpr Size kTargetSize = 8;
constexpr char kTarget[kTargetSize] = "RBJT";

}  // namespace

// Only a lack of memory can keep the address from being created. A channel without it could never send anything.
IPC_via_AE::IPC_via_AE() {
    if (AECreateDesc(typeApplSignature, kTarget, kTargetSize, &target_) != noErr) throw std::bad_alloc();
}

IPC_via_AE::~IPC_via_AE() {
    AEDisposeDesc(&target_);
}

int32_t IPC_via_AE::CreateEvent(AEEventClass eventClass, AEEventID eventID, AppleEvent* event) const {
    return AECreateAppleEvent(eventClass, eventID, &target_, kAutoGenerateReturnID, kAnyTransactionID, event);
}

int32_t IPC_via_AE::PutData(AppleEvent* event, const uint8_t* bytes, uint32_t length) const {
    const auto size = static_cast<Size>(length);
    // On a 32-bit platform `Size` is signed and has 32 bits, so a length of 2 GiB or more becomes negative.
    if (size < 0) return memFullErr;
    return AEPutParamPtr(event, keyDirectObject, typeChar, bytes, size);
}

int32_t IPC_via_AE::GetData(const AppleEvent* event, std::unique_ptr<uint8_t[]>& buffer,
                            uint32_t& length) const {
    return GetData(event, ByteBlock(), buffer, length);
}

int32_t IPC_via_AE::GetData(const AppleEvent* event, ByteBlock spare, std::unique_ptr<uint8_t[]>& buffer,
                            uint32_t& length) const {
    buffer.reset();
    length = 0;
    std::unique_ptr<uint8_t[]> received = std::move(spare.data);
    uint32_t size = 0;
    const OSErr error = readDirectParameter(event, [&](uint32_t wanted) {
        if (!isReusable(spare.length, wanted)) {
            // The heap can then use the memory of a large block.
            received.reset();
            received.reset(new uint8_t[wanted]);
        }
        size = wanted;
        return received.get();
    });
    if (error != noErr || size == 0) return error;
    buffer = std::move(received);
    length = size;
    return noErr;
}

int32_t IPC_via_AE::GetData(const AppleEvent* event, CPPByteArray& array) const {
    array.assign(CPPByteArray());
    CPPByteArray received;
    const OSErr error = readDirectParameter(event, [&](uint32_t wanted) {
        uint8_t* const block = received.setUninitialized(wanted);
        if (block == nullptr) throw std::bad_alloc();
        return block;
    });
    if (error == noErr) array.swap(received);
    return error;
}

// Copies the direct parameter to the block that `allocate(size)` returns. Does not call it if the parameter
// is empty.
template <class Allocate>
OSErr IPC_via_AE::readDirectParameter(const AppleEvent* event, const Allocate& allocate) {
    Size size = 0;
    OSErr error = AEGetParamPtr(event, keyDirectObject, typeChar, nullptr, nullptr, 0, &size);
    if (error != noErr) return error;
    if (size < 1) return noErr;
    if (static_cast<uint64_t>(size) > std::numeric_limits<uint32_t>::max()) return memFullErr;

    uint8_t* const block = allocate(static_cast<uint32_t>(size));
    Size receivedSize = 0;
    error = AEGetParamPtr(event, keyDirectObject, typeChar, nullptr, block, size, &receivedSize);
    if (error != noErr) return error;
    // The sender may share the memory of the event and change it in between.
    if (receivedSize != size) return errAECorruptData;
    return noErr;
}

}  // namespace dovrel
