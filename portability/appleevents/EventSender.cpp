#include "portability/appleevents/EventSender.h"

#include <ApplicationServices/Processes.h>
#include <CoreServices/AppleEvents.h>
#include <CoreServices/MacErrors.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "portability/appleevents/EventDispatch.h"
#include "portability/appleevents/EventStorage.h"
#include "portability/posix/ErrnoKeeper.h"
#include "portability/transport/ConnectionPool.h"
#include "portability/transport/Endpoint.h"

namespace portability {

namespace {

constexpr AESendMode kReplyModeMask = 0x03;

// Null if there is no reply or after an error.
using ReplyEvent = std::unique_ptr<EventStorage>;

// The receiver to which an address refers.
struct Target {
    enum class Kind { endpoint, thisProcess, nobody, unknown };
    Kind kind;
    OSType signature = 0;
};

template <class Value>
bool readValue(const ImageItem& address, Value& value) {
    if (address.header.size < sizeof value) return false;
    std::memcpy(&value, address.data, sizeof value);
    return true;
}

bool readProcess(const ImageItem& address, pid_t& process) {
    if (address.header.type == typeKernelProcessID) return readValue(address, process);
    ProcessSerialNumber number;
    return readValue(address, number) && GetProcessPID(&number, &process) == noErr;
}

// Reads the signature. An address of four bytes is the code in the machine's byte order. A longer address is
// the code's text, followed by other bytes; its characters are in reading order on every machine.
bool readSignature(const ImageItem& address, OSType& signature) {
    if (!readValue(address, signature)) return false;
    if (address.header.size == sizeof signature) return true;
    const uint8_t* const text = address.data;
    signature = static_cast<OSType>(text[0]) << 24 | static_cast<OSType>(text[1]) << 16 |
                static_cast<OSType>(text[2]) << 8 | static_cast<OSType>(text[3]);
    return true;
}

Target findTarget(const EventStorage& event) {
    ImageItem address;
    if (!event.findItem(ItemKind::attribute, keyAddressAttr, address)) return {Target::Kind::unknown};
    OSType signature = 0;
    pid_t process = 0;
    switch (address.header.type) {
        case typeApplSignature:
            if (!readSignature(address, signature)) return {Target::Kind::nobody};
            return {Target::Kind::endpoint, signature};
        case typeKernelProcessID:
        case typeProcessSerialNumber:
            if (!readProcess(address, process) || process != getpid()) return {Target::Kind::nobody};
            return {Target::Kind::thisProcess};
        default:
            return {Target::Kind::unknown};
    }
}

OSStatus sendToThisProcess(const EventStorage& event, const OutgoingRequest& request, bool wantsReply,
                           ReplyEvent& reply) {
    // The handler reads a view of the event, so that noteRead() does not mark parameters of the
    // sender's event.
    EventStorage received(event.image().data(), event.image().size(), nullptr);
    received.setDelivery({getpid(), kAEDirectCall, request.mode, request.timeOutInTicks});
    if (wantsReply) {
        reply = std::make_unique<EventStorage>();
        if (prepareReply(received, *reply) != noErr) return memFullErr;
    }
    const OSErr result = dispatchEvent(received, reply.get());
    if (!wantsReply) return noErr;
    return result;
}

OSStatus toStatus(Connection::Outcome outcome, OSStatus replyResult) {
    switch (outcome) {
        case Connection::Outcome::done:
            return replyResult;
        case Connection::Outcome::timedOut:
            return errAETimeout;
        case Connection::Outcome::cancelled:
            return errAEWaitCanceled;
        case Connection::Outcome::noMemory:
            return memFullErr;
        case Connection::Outcome::notSent:
        case Connection::Outcome::lost:
            break;
    }
    return connectionInvalid;
}

bool isUsable(Connection::Outcome outcome) {
    return outcome != Connection::Outcome::notSent && outcome != Connection::Outcome::lost;
}

// Makes an event of a reply. The image is copied unless a block keeps it valid.
ReplyEvent eventOfReply(ReceivedReply& received) {
    if (received.block == nullptr) return EventStorage::makeCopy(received.image, received.size);
    return std::make_unique<EventStorage>(received.image, received.size, std::move(received.block));
}

// Performs one exchange over one connection. A damaged reply counts as a lost connection.
Connection::Outcome exchange(Connection& connection, const OutgoingRequest& request, OSStatus& result,
                             ReplyEvent& reply) {
    ReceivedReply received;
    const Connection::Outcome outcome = connection.exchange(request, received);
    if (outcome != Connection::Outcome::done) return outcome;
    ReplyEvent event = eventOfReply(received);
    if (!event->isWhole()) return Connection::Outcome::lost;
    result = received.result;
    if (result == noErr) reply = std::move(event);
    return outcome;
}

OSStatus sendToEndpoint(OSType signature, const OutgoingRequest& request, bool wantsReply,
                        ReplyEvent& reply) {
    for (;;) {
        std::unique_ptr<KeptConnection> kept = takeKeptConnection(signature);
        const bool isFresh = kept == nullptr;
        if (isFresh) {
            FileDescriptor socket;
            const Connecting connecting = connectToEndpoint(signature, request.deadline, socket);
            if (connecting == Connecting::timedOut) return errAETimeout;
            if (connecting == Connecting::failed) return procNotFound;
            kept = std::make_unique<KeptConnection>(signature, std::move(socket));
        }
        Connection& connection = kept->connection;
        OSStatus replyResult = noErr;
        const Connection::Outcome outcome =
            wantsReply ? exchange(connection, request, replyResult, reply) : connection.post(request);
        if (isUsable(outcome)) keepConnection(std::move(kept));
        // A pooled connection that its peer has closed does not show whether the endpoint has a new owner. So
        // the next connection is tried, and finally a new one.
        if (outcome == Connection::Outcome::notSent && !isFresh) continue;
        return toStatus(outcome, replyResult);
    }
}

OSStatus sendToTarget(const EventStorage& event, const OutgoingRequest& request, ReplyEvent& reply) {
    const AESendMode replyMode = request.mode & kReplyModeMask;
    if (replyMode != kAENoReply && replyMode != kAEWaitReply) return errAEUnknownSendMode;
    const bool wantsReply = replyMode == kAEWaitReply;
    const Target target = findTarget(event);
    switch (target.kind) {
        case Target::Kind::endpoint:
            return sendToEndpoint(target.signature, request, wantsReply, reply);
        case Target::Kind::thisProcess:
            return sendToThisProcess(event, request, wantsReply, reply);
        case Target::Kind::nobody:
            return procNotFound;
        case Target::Kind::unknown:
            break;
    }
    return errAEUnknownAddressType;
}

SInt32 asSInt32(long number) {
    return static_cast<SInt32>(std::clamp<int64_t>(number, std::numeric_limits<int32_t>::min(),
                                                   std::numeric_limits<int32_t>::max()));
}

}  // namespace

OSStatus sendEvent(const AppleEvent* event, AppleEvent* reply, AESendMode mode, long timeOutInTicks,
                   IdleCaller* idle) {
    const ErrnoKeeper errnoKeeper;
    if (reply != nullptr) AEInitializeDesc(reply);
    const EventStorage* storage = DescriptorStorage::getEvent(event);
    if (storage == nullptr) return errAENotAEDesc;
    const OutgoingRequest request{storage->image(), mode, asSInt32(timeOutInTicks),
                                  Deadline::afterTicks(timeOutInTicks), idle};
    ReplyEvent received;
    OSStatus status;
    try {
        status = sendToTarget(*storage, request, received);
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
    if (status != noErr || reply == nullptr || received == nullptr) return status;
    reply->descriptorType = typeAppleEvent;
    reply->dataHandle = received.release()->handle();
    return status;
}

}  // namespace portability
