#include "InterProcessCommunication/Client_to_POS_Communicator.h"

#include <unistd.h>

#include <cstring>
#include <string>
#include <utility>

#include "InterProcessCommunication/ConsoleBlocks.h"
#include "InterProcessCommunication/EventDescriptor.h"
#include "InterProcessCommunication/IPC_Info.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/ServerDiscovery.h"
#include "platform/CFObject.h"
#include "platform/files/Places.h"
#include "platform/trace/FailureNotes.h"
#include "platform/trace/StatusNames.h"

namespace dovrel {

namespace {

constexpr int kFurtherPasses = 9;
// Short, because the time-outs of the handshake do the waiting.
constexpr useconds_t kPauseBetweenPasses = 100;

OSErr sendAndWait(const AppleEvent* event, AppleEvent* reply, SInt32 timeOutTicks) {
    return AESend(event, reply, kAEWaitReply, kAENormalPriority, timeOutTicks, nullptr, nullptr);
}

std::string resultText(int32_t result) {
    if (result != kServerNotFound) return statusText(result);
    const std::string bundle = std::string(places::kInstallFolder) + places::kServerBundleName;
    return std::to_string(result) + " (nothing at " + fileSystemPath(bundle) + ")";
}

/// Traces one step of the connection and its result. A failure is also noted for the error log; the note is
/// dropped when a later step succeeds.
void traceStep(const char* step, int32_t result) {
    const auto makeText = [&] { return std::string(step) + ": result " + resultText(result); };
    if (result == noErr) {
        Trace::write(TraceArea::kConnection, TraceLevel::kSteps, makeText);
        FailureNotes::dropFailedStep(TraceArea::kConnection);
    } else {
        FailureNotes::addFailedStep(TraceArea::kConnection, makeText);
    }
}

}  // namespace

Client_to_POS_Communicator::~Client_to_POS_Communicator() = default;

int32_t Client_to_POS_Communicator::SendData(IPC_Info& info) const {
    EventDescriptor event;
    EventDescriptor reply;
    info.setDescriptors(event.get(), reply.get());
    info.setReceiveBuffer(nullptr, 0);
    const int32_t result = sendAndReadReply(info);
    info.setDescriptors(nullptr, nullptr);
    return result;
}

int32_t Client_to_POS_Communicator::sendAndReadReply(IPC_Info& info) const {
    int32_t error = CreateEvent(serverEvent::kBufferClass, serverEvent::kData, info.getEvent());
    if (error != noErr) return error;
    error = PutData(info.getEvent(), info.getSendBuffer(), info.getSendSize());
    if (error != noErr) return error;
    error = sendAndWait(info.getEvent(), info.getReply(), serverEvent::kDataTimeOutTicks);
    if (error != noErr) return error;

    // The reply often has about the size of its request, and fresh memory for a large one takes long.
    std::unique_ptr<uint8_t[]> buffer;
    uint32_t length = 0;
    error = GetData(info.getReply(), info.takeSendBuffer(), buffer, length);
    info.setReceiveBuffer(std::move(buffer), length);
    return error;
}

int32_t Client_to_POS_Communicator::SendAndReceive(IPC_Info& info) const {
    const int32_t result = SendData(info);
    info.setReplyObject(new POSTransferObj(info.takeReceiveBuffer()));
    return result;
}

int32_t Client_to_POS_Communicator::WakeServer(uint32_t timeoutMs, uint32_t attempts) const {
    EventDescriptor event;
    int32_t error = CreateEvent(serverEvent::kBufferClass, serverEvent::kWakeClient, event.get());
    if (error != noErr) return error;

    IPC_Info info;
    std::unique_ptr<uint8_t[]> text(new uint8_t[serverEvent::kWakeTextSize]);
    std::memcpy(text.get(), serverEvent::kWakeText, serverEvent::kWakeTextSize);
    info.setSendBuffer(std::move(text), serverEvent::kWakeTextSize);
    // A failure is ignored: the server replies to the event whatever its content is.
    PutData(event.get(), info.getSendBuffer(), info.getSendSize());

    EventDescriptor reply;
    const uint32_t timeOutTicks = timeoutMs * serverEvent::kTicksPerSecond / 1000u;
    error = sendWakeEvents(event.get(), static_cast<SInt32>(timeOutTicks), attempts, reply.get());
    if (error != noErr) return error;

    std::unique_ptr<uint8_t[]> answer;
    uint32_t length = 0;
    error = GetData(reply.get(), answer, length);
    info.setReceiveBuffer(std::move(answer), length);
    return error;
}

// `attempts == 0` counts as a time-out.
int32_t Client_to_POS_Communicator::sendWakeEvents(const AppleEvent* event, SInt32 timeOutTicks,
                                                   uint32_t attempts, AppleEvent* reply) const {
    OSErr error = errAETimeout;
    for (uint32_t sent = 0; sent < attempts && error != noErr; ++sent)
        error = sendAndWait(event, reply, timeOutTicks);
    return error;
}

int32_t Client_to_POS_Communicator::ConnectToServer() const {
    CFURLRef found = nullptr;
    const OSErr notFound = FindServerApplication(&found);
    traceStep("find the server application", notFound);
    const CFObject<CFURLRef> application(found);
    if (notFound != noErr) {
        printServerNotFound();
        return notFound;
    }

    int16_t error = noErr;
    if (launchAndWake(application.get(), error)) return noErr;
    for (int pass = 0; pass < kFurtherPasses; ++pass) {
        usleep(kPauseBetweenPasses);
        if (launchAndWake(application.get(), error)) return noErr;
    }
    printLaunchFailure(error);
    return kServerNotLaunched;
}

// Makes one attempt to launch and wake the server. Returns false on failure. Success cannot be told from
// `error`, because a launch status that is cut to 16 bits may become 0.
bool Client_to_POS_Communicator::launchAndWake(CFURLRef application, int16_t& error) const {
    if (!IsServerRunning()) {
        const OSStatus launched = LaunchServer(application);
        traceStep("launch the server", launched);
        error = static_cast<int16_t>(launched);
        if (launched != noErr) return false;
    }
    error = static_cast<int16_t>(WakeServer(serverEvent::kWakeTimeOutMs, serverEvent::kWakeAttempts));
    traceStep("wake the server", error);
    return error == noErr;
}

int32_t Client_to_POS_Communicator::QuitServer() const {
    EventDescriptor event;
    const int32_t error = CreateEvent(kCoreEventClass, kAEQuitApplication, event.get());
    if (error != noErr) return error;
    const OSStatus sent = AESendMessage(event.get(), nullptr, kAENoReply, serverEvent::kQuitTimeOutTicks);
    if (sent == procNotFound) return noErr;
    return static_cast<int16_t>(sent);
}

}  // namespace dovrel
