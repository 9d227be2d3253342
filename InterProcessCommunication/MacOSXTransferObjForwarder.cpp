#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "InterProcessCommunication/IPC_Info.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/ServerDiscovery.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/POSException.h"
#include "platform/trace/FailureNotes.h"
#include "platform/trace/StatusNames.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

constexpr int kMostAttempts = 20;
constexpr int32_t kNothingSent = -1;
constexpr char kCommunicationErrorText[] =
    "An unknown interapplication communication error occured. In case the problem persists, please close all "
    "applications and restart your computer.";

void copyRequest(const POSTransferObj& request, IPC_Info& exchange) {
    ByteBlock wireForm = request.copyWireForm();
    exchange.setSendBuffer(std::move(wireForm.data), wireForm.length);
}

bool isServerGone(int32_t result) {
    return result == procNotFound || result == connectionInvalid;
}

[[noreturn]] void throwText(const char* key) {
    throw new POSException(MultiLanguageSupport::getText(key).c_str());
}

}  // namespace

MacOSXTransferObjForwarder::~MacOSXTransferObjForwarder() = default;

POSTransferObj* MacOSXTransferObjForwarder::ForwardTransferObj(POSTransferObj& request) {
    for (int attempt = 1;; ++attempt) {
        std::unique_ptr<POSTransferObj> reply;
        const int32_t result = sendOnce(request, reply);
        if (result == noErr) {
            FailureNotes::dropFailedSteps();
            return reply.release();
        }
        FailureNotes::addFailedStep(TraceArea::kExchange, [&] {
            return readCommandName(request.bytes()) + ": attempt " + std::to_string(attempt) + ": result " +
                   statusText(result);
        });
        if (!isServerGone(result)) throw new POSException(kCommunicationErrorText);

        connected_ = false;
        ConnectToPOS(kConnectHint);
        if (attempt == kMostAttempts) return reply.release();
    }
}

int32_t MacOSXTransferObjForwarder::sendOnce(const POSTransferObj& request,
                                             std::unique_ptr<POSTransferObj>& reply) const {
    IPC_Info exchange;
    copyRequest(request, exchange);
    if (exchange.getSendSize() == 0) return kNothingSent;
    const int32_t result = communicator_.SendAndReceive(exchange);
    reply = exchange.takeReplyObject();
    return result;
}

void MacOSXTransferObjForwarder::ConnectToPOS(uint32_t /*hint*/) {
    if (connected_) return;
    switch (communicator_.ConnectToServer()) {
        case noErr:
            connected_ = true;
            return;
        case kServerNotFound:
            throwText(kDllMsgMerrowdIsMissing);
        case kServerNotLaunched:
            throwText(kDllMsgMerrowdIsCorrupt);
        default:
            return;
    }
}

void MacOSXTransferObjForwarder::CheckConnection() {
    if (connected_) connected_ = isServerAlive();
}

bool MacOSXTransferObjForwarder::isServerAlive() const {
    return false;
}

CPPByteArray MacOSXTransferObjForwarder::GetClientProcessID() {
    CPPByteArray identity;
    ProcessSerialNumber number;
    if (GetCurrentProcess(&number) != noErr) return identity;
    // An empty array would mean that the system cannot tell the serial number.
    identity.setOrThrow(&number, sizeof number);
    return identity;
}

}  // namespace dovrel
