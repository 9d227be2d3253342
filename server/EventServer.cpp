#include "server/EventServer.h"

#include <Carbon/Carbon.h>

#include <new>
#include <utility>

#include "client/exceptions/CPPException.h"

// The platform's 64-bit headers do not declare these functions, but its 64-bit libraries contain them.
extern "C" void RunApplicationEventLoop(void);
extern "C" void QuitApplicationEventLoop(void);

namespace merrowd {

using dovrel::CPPException;

namespace {

pid_t getSender(const AppleEvent* event) {
    SInt32 process = 0;
    AEGetAttributePtr(event, keySenderPIDAttr, typeSInt32, nullptr, &process, sizeof process, nullptr);
    return static_cast<pid_t>(process);
}

}  // namespace

EventServer::EventServer(ServerState& state, Exchanges& exchanges, ControlCalls& control)
    : state_(state), exchanges_(exchanges), control_(control) {}

bool EventServer::run() {
    const bool installed = install<&EventServer::data>(kDataEvent) &&
                           install<&EventServer::handshake>(kHandshakeEvent) &&
                           install<&EventServer::control>(kControlEvent) &&
                           install<&EventServer::tick>(kTickEvent) && install<&EventServer::quit>(kQuitEvent);
    if (!installed) return false;
    watchClients();
    RunApplicationEventLoop();
    return true;
}

template <EventServer::Handler handler>
bool EventServer::install(const EventKind& kind) {
    return AEInstallEventHandler(kind.eventClass, kind.eventId, entry<handler>,
                                 reinterpret_cast<SRefCon>(this), false) == noErr;
}

// No exception may pass through the platform's stack frames.
template <EventServer::Handler handler>
OSErr EventServer::entry(const AppleEvent* event, AppleEvent* reply, SRefCon server) {
    try {
        return (reinterpret_cast<EventServer*>(server)->*handler)(event, reply);
    } catch (const std::bad_alloc&) {
        return memFullErr;
    } catch (CPPException* caught) {
        std::unique_ptr<CPPException> failure(caught);
        return errAEEventFailed;
    } catch (...) {
        // For example, std::system_error if no thread can be started.
        return errAEEventFailed;
    }
}

OSErr EventServer::data(const AppleEvent* event, AppleEvent* reply) {
    POSTransferObj request{dovrel::ByteBlock()};
    const int32_t status = channel_.ReceiveTransferObj(event, request);
    if (status != noErr) return static_cast<OSErr>(status);
    return send(exchanges_.handleData(request.takeBytes(), getSender(event)), event, reply);
}

OSErr EventServer::handshake(const AppleEvent* event, AppleEvent* reply) {
    return send(exchanges_.handleHandshake(getSender(event)), event, reply);
}

OSErr EventServer::control(const AppleEvent* event, AppleEvent* reply) {
    std::unique_ptr<uint8_t[]> bytes;
    uint32_t length = 0;
    const int32_t status = channel_.GetData(event, bytes, length);
    if (status != noErr) return static_cast<OSErr>(status);
    const OSErr sent = send(control_.handle(std::string(bytes.get(), bytes.get() + length)), event, reply);
    watchClients();
    return sent;
}

OSErr EventServer::tick(const AppleEvent*, AppleEvent*) {
    watch_.done();
    if (exchanges_.hasNoMoreClients()) QuitApplicationEventLoop();
    return noErr;
}

OSErr EventServer::quit(const AppleEvent*, AppleEvent*) {
    QuitApplicationEventLoop();
    return noErr;
}

OSErr EventServer::send(Outcome outcome, const AppleEvent* event, AppleEvent* reply) {
    // A suspended event that is never resumed gets no reply: its sender waits until this process has ended.
    if (outcome.isSilent) return AESuspendTheCurrentEvent(event);
    if (outcome.endServer) {
        vanishes_ = outcome.vanish;
        QuitApplicationEventLoop();
    }
    const bool wanted = reply->descriptorType != typeNull;
    if (!wanted || outcome.parameter == nullptr) return outcome.status;
    const CPPByteArray& bytes = outcome.parameter->bytes();
    return static_cast<OSErr>(channel_.PutData(reply, bytes.data(), bytes.getSize()));
}

void EventServer::watchClients() {
    if (state_.settings.endWithLastClient) watch_.start();
}

}  // namespace merrowd
