#include "events/EventServer.h"

#include <CoreServices/MacErrors.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <array>
#include <new>

#include "events/EventDispatch.h"
#include "events/EventStorage.h"

namespace portability {

namespace {

constexpr int kLongestStreak = 4;
constexpr int kMostAcceptedAtOnce = 64;
constexpr AESendMode kReplyModeMask = 0x03;

FileDescriptor openSpare() {
    return FileDescriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool setNonBlocking(int descriptor) {
    const int flags = fcntl(descriptor, F_GETFL);
    return flags >= 0 && fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) == 0;
}

// Runs the handlers. The result is what the sender's call is to answer.
OSStatus handle(EventStorage& event, EventStorage* reply) {
    try {
        if (reply != nullptr && prepareReply(event, *reply) != noErr) return memFullErr;
        return dispatchEvent(event, reply);
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
}

}  // namespace

EventServer::EventServer(EndpointClaim claim, int wakeDescriptor)
    : claim_(std::move(claim)),
      wake_(wakeDescriptor),
      epoll_(epoll_create1(EPOLL_CLOEXEC)),
      spare_(openSpare()) {
    ready_ = epoll_ && watch(wake_);
    const int listening = claim_.listenDescriptor();
    if (ready_ && listening >= 0) ready_ = setNonBlocking(listening) && watch(listening);
}

EventServer::~EventServer() = default;

bool EventServer::watch(int descriptor) {
    epoll_event wanted{};
    wanted.events = EPOLLIN;
    wanted.data.fd = descriptor;
    return epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &wanted) == 0;
}

bool EventServer::serve() {
    if (latest_ >= 0 && streak_ < kLongestStreak) {
        const Round round = spinForNext();
        if (round.woken || round.handled) return round.woken;
        streak_ = 0;
        return handleReady(-1).woken;
    }
    const bool mayWait = streak_ == 0;
    streak_ = 0;
    return handleReady(mayWait ? -1 : 0).woken;
}

// The sender that was just answered is the likeliest to send the next event. It is given the processor before
// the first look, as its event can hardly be there already.
EventServer::Round EventServer::spinForNext() {
    Spin spin;
    while (latest_ >= 0 && spin.again()) {
        if (handleOneOf(latest_)) return {false, true};
        if (senders_.size() < 2) continue;
        const Round others = handleReady(0);
        if (others.woken || others.handled) return others;
    }
    return {};
}

EventServer::Round EventServer::handleReady(int timeoutMilliseconds) {
    std::array<epoll_event, 16> events;
    const int count = epoll_wait(epoll_.get(), events.data(), events.size(), timeoutMilliseconds);
    Round round;
    for (int i = 0; i < count; ++i) {
        const int descriptor = events[static_cast<size_t>(i)].data.fd;
        if (descriptor == wake_) {
            round.woken = true;
        } else if (descriptor == claim_.listenDescriptor()) {
            acceptSenders();
        } else if (handleOneOf(descriptor)) {
            round.handled = true;
        }
    }
    return round;
}

void EventServer::acceptSenders() {
    for (int i = 0; i < kMostAcceptedAtOnce; ++i) {
        FileDescriptor socket(accept4(claim_.listenDescriptor(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!socket) {
            if (errno == EMFILE || errno == ENFILE) refuseSender();
            if (errno != ECONNABORTED && errno != EINTR) return;
            continue;
        }
        pid_t process = 0;
        const int descriptor = socket.get();
        if (!isOwnUser(descriptor, process)) continue;
        try {
            senders_[descriptor] = std::make_unique<Sender>(std::move(socket), process);
        } catch (const std::bad_alloc&) {
            senders_.erase(descriptor);
            continue;
        }
        if (!watch(descriptor)) senders_.erase(descriptor);
    }
}

// A sender that cannot be accepted would make every wait end at once.
void EventServer::refuseSender() {
    if (spare_) {
        spare_.reset();
        FileDescriptor refused(accept4(claim_.listenDescriptor(), nullptr, nullptr, SOCK_CLOEXEC));
        refused.reset();
        spare_ = openSpare();
    } else {
        constexpr int kPauseMilliseconds = 10;
        poll(nullptr, 0, kPauseMilliseconds);
        spare_ = openSpare();
    }
    errno = EMFILE;
}

bool EventServer::handleOneOf(int descriptor) {
    const auto found = senders_.find(descriptor);
    if (found == senders_.end()) return false;
    Sender& sender = *found->second;
    ReceivedFrame frame;
    const EventChannel::Received received = sender.channel.receive(buffer_, frame);
    if (received == EventChannel::Received::nothing) return false;
    if (received == EventChannel::Received::frame && answer(sender, frame)) {
        latest_ = descriptor;
        ++streak_;
        return true;
    }
    if (latest_ == descriptor) latest_ = -1;
    senders_.erase(descriptor);
    return false;
}

// False when the sender has broken the rules or does not take its replies.
bool EventServer::answer(Sender& sender, const ReceivedFrame& frame) {
    const FrameHeader& request = frame.header;
    if (request.kind != FrameKind::request) return false;
    EventStorage event(frame.image, request.imageSize, frame.block);
    event.setDelivery({sender.process, kAELocalProcess, request.sendMode, request.timeOutInTicks});
    if ((request.sendMode & kReplyModeMask) != kAEWaitReply) {
        handle(event, nullptr);
        return true;
    }
    EventStorage reply;
    FrameHeader header;
    header.kind = FrameKind::reply;
    header.id = request.id;
    header.result = static_cast<int32_t>(handle(event, &reply));
    ImageMemory nothing;
    EventChannel::Sent sent =
        sender.channel.send(header, header.result == noErr ? reply.image() : nothing, /*confirmed=*/true);
    if (sent == EventChannel::Sent::failed) {
        header.result = memFullErr;
        sent = sender.channel.send(header, nothing, /*confirmed=*/true);
    }
    return sent == EventChannel::Sent::done;
}

}  // namespace portability
