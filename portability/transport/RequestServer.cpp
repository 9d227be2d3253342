#include "portability/transport/RequestServer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace portability {

namespace {

constexpr int kLongestStreak = 16;
constexpr int kLooksPerRound = 4;
constexpr int kMostAcceptedAtOnce = 64;
// Twice what one packet can bring, because refused descriptors are closed later.
constexpr rlim_t kMostReserved = 512;

FileDescriptor openSpare() {
    return aboveStandardStreams(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool setNonBlocking(int descriptor) {
    const int flags = fcntl(descriptor, F_GETFL);
    return flags >= 0 && fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) == 0;
}

// Returns whether enough descriptors stay free for those that packets bring. If there were none, the system would
// close them on this thread, and a sender can make that take any time. New descriptors have the lowest free number.
bool leavesReserve(int newest) {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return true;
    return static_cast<rlim_t>(newest) < limit.rlim_cur - std::min(kMostReserved, limit.rlim_cur / 2);
}

}  // namespace

class RequestServer::Replier final : public RequestHandler::ReplySender {
  public:
    Replier(RequestServer& server, Sender& sender, uint64_t id) : server_(server), sender_(sender), id_(id) {}

    Channel::Sent send(int32_t result, const MessageMemory& image) override {
        return server_.reply(sender_, id_, result, image);
    }

  private:
    RequestServer& server_;
    Sender& sender_;
    const uint64_t id_;
};

RequestServer::RequestServer(EndpointClaim claim, int wakeDescriptor, RequestHandler& handler,
                             const std::atomic<bool>& isEnding)
    : claim_(std::move(claim)),
      handler_(handler),
      wake_(wakeDescriptor),
      isEnding_(isEnding),
      epoll_(aboveStandardStreams(epoll_create1(EPOLL_CLOEXEC))),
      spare_(openSpare()) {
    ready_ = epoll_ && watch(wake_);
    const int listening = claim_.listenDescriptor();
    if (ready_ && listening >= 0) ready_ = setNonBlocking(listening) && watch(listening);
}

RequestServer::~RequestServer() {
    claim_.withdraw();
}

bool RequestServer::watch(int descriptor) {
    epoll_event wanted{};
    wanted.events = EPOLLIN;
    wanted.data.fd = descriptor;
    return epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &wanted) == 0;
}

bool RequestServer::serve() {
    const bool mayLook = latest_ != nullptr || lookingCount_ != 0;
    if (mayLook && streak_ < kLongestStreak) {
        const Round round = spinForNext();
        if (round.woken || round.handled) return round.woken;
        latest_ = nullptr;
        if (stopLooking()) return false;
    }
    const int timeout = lookingCount_ == 0 && streak_ < kLongestStreak ? -1 : 0;
    streak_ = 0;
    return handleReady(timeout).woken;
}

// Polls for the next request. The senders that got the latest replies are the most likely to send it. Most looks
// need no system call.
RequestServer::Round RequestServer::spinForNext() {
    Spin spin(spinHistory_, latestSize_);
    Round round;
    int looks = 0;
    while (spin.again(peerPlace())) {
        round.handled = handleMail();
        if (!round.handled && spin.isSystemCallDue()) {
            const bool isOnlySocket = latest_ != nullptr && !isLookingFor(*latest_);
            round.handled = isOnlySocket && handleNextRequest(*latest_);
            if (!round.handled && ++looks % kLooksPerRound == 0) round = handleReady(0);
        }
        if (round.handled) spin.found();
        if (round.handled || round.woken) break;
    }
    return round;
}

// Returns where the senders run whose mailboxes we poll. If one of them may need this processor, yielding is
// right for all.
Spin::Peer RequestServer::peerPlace() const {
    const auto end = looking_.begin() + lookingCount_;
    const bool allElsewhere =
        lookingCount_ != 0 && std::all_of(looking_.begin(), end, [](const Sender* sender) {
            return sender->channel.peerPlace() == Spin::Peer::elsewhere;
        });
    return allElsewhere ? Spin::Peer::elsewhere : Spin::Peer::here;
}

RequestServer::Round RequestServer::handleReady(int timeoutMilliseconds) {
    std::array<epoll_event, 16> events;
    const int count = epoll_wait(epoll_.get(), events.data(), events.size(), timeoutMilliseconds);
    Round round;
    for (int i = 0; i < count; ++i) {
        const int descriptor = events[static_cast<size_t>(i)].data.fd;
        if (descriptor == wake_) {
            round.woken = true;
        } else if (descriptor == claim_.listenDescriptor()) {
            acceptSenders();
        } else {
            const auto found = senders_.find(descriptor);
            const bool handled = found != senders_.end() && handleNextRequest(*found->second);
            round.handled = handled || round.handled;
        }
    }
    return round;
}

bool RequestServer::handleMail() {
    bool handled = false;
    // If a sender is disconnected, the list moves up, and the sender after it is skipped until the next call.
    for (size_t i = 0; i < lookingCount_; ++i) {
        handled = handlePosted(*looking_[i]) || handled;
    }
    return handled;
}

// Stops polling. Returns true if it handled requests that had been posted before their senders could
// notice this.
bool RequestServer::stopLooking() {
    const std::array<Sender*, kMostLookedFor> stopped = looking_;
    const size_t count = std::exchange(lookingCount_, 0);
    for (size_t i = 0; i < count; ++i)
        stopped[i]->channel.setLooking(false);
    bool handled = false;
    for (size_t i = 0; i < count; ++i) {
        handled = handlePosted(*stopped[i]) || handled;
    }
    return handled;
}

void RequestServer::pollMailbox(Sender& sender) {
    if (!sender.channel.hasMailbox() || !Spin::isOn() || !spinHistory_.isWorthwhile()) return;
    if (lookingCount_ == looking_.size() || isLookingFor(sender)) return;
    looking_[lookingCount_++] = &sender;
    sender.channel.setLooking(true);
}

bool RequestServer::isLookingFor(const Sender& sender) const {
    const auto end = looking_.begin() + lookingCount_;
    return std::find(looking_.begin(), end, &sender) != end;
}

void RequestServer::acceptSenders() {
    for (int i = 0; i < kMostAcceptedAtOnce && !isEnding_.load(); ++i) {
        // A number that becomes free is for the spare descriptor first: without it, nobody can be refused.
        if (!spare_) spare_ = openSpare();
        if (!spare_) {
            constexpr int kPauseMilliseconds = 10;
            poll(nullptr, 0, kPauseMilliseconds);
            return;
        }
        FileDescriptor socket =
            aboveStandardStreams(accept4(claim_.listenDescriptor(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!socket) {
            if (errno == EMFILE || errno == ENFILE) refuseSender();
            if (errno != ECONNABORTED && errno != EINTR) return;
            continue;
        }
        pid_t process = 0;
        const int descriptor = socket.get();
        if (!leavesReserve(descriptor) || !isOwnUser(descriptor, process)) {
            shutdown(descriptor, SHUT_RDWR);
            closer_.close(std::move(socket));
            continue;
        }
        try {
            senders_[descriptor] = std::make_unique<Sender>(std::move(socket), closer_, process);
        } catch (const std::bad_alloc&) {
            senders_.erase(descriptor);
            continue;
        }
        if (!watch(descriptor)) senders_.erase(descriptor);
    }
}

// Accepts and closes one connection when descriptors have run out. Otherwise the waiting connection would
// make every epoll_wait return at once.
void RequestServer::refuseSender() {
    spare_.reset();
    FileDescriptor socket(accept4(claim_.listenDescriptor(), nullptr, nullptr, SOCK_CLOEXEC));
    shutdown(socket.get(), SHUT_RDWR);
    closer_.close(std::move(socket));
    spare_ = openSpare();
    errno = EMFILE;
}

// Handles the request that the sender has posted to its mailbox, if any.
bool RequestServer::handlePosted(Sender& sender) {
    if (isEnding_.load()) return false;
    ReceivedFrame frame;
    return handle(sender, sender.channel.look(frame), frame);
}

bool RequestServer::handleNextRequest(Sender& sender) {
    if (isEnding_.load()) return false;
    ReceivedFrame frame;
    return handle(sender, sender.channel.receive(buffer_, frame), frame);
}

// Handles a received frame. Returns true if it was a request. If it returns false, the sender may have been
// disconnected and deleted.
bool RequestServer::handle(Sender& sender, Channel::Received received, const ReceivedFrame& frame) {
    if (received == Channel::Received::nothing || received == Channel::Received::elsewhere) return false;
    if (received == Channel::Received::closed) {
        dismiss(sender);
        return false;
    }
    if (received != Channel::Received::frame || !handleRequest(sender, frame)) {
        refuse(sender);
        return false;
    }
    latest_ = &sender;
    ++streak_;
    return true;
}

// Disconnects the sender and deletes it.
void RequestServer::dismiss(Sender& sender) {
    if (latest_ == &sender) latest_ = nullptr;
    const auto end = looking_.begin() + lookingCount_;
    lookingCount_ -= static_cast<size_t>(end - std::remove(looking_.begin(), end, &sender));
    const int descriptor = sender.descriptor;
    senders_.erase(descriptor);
}

// Disconnects a sender that violates the protocol. Unread packets may have descriptors, which the system
// closes together with the socket.
void RequestServer::refuse(Sender& sender) {
    FileDescriptor socket = sender.channel.releaseSocket();
    epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, socket.get(), nullptr);
    shutdown(socket.get(), SHUT_RDWR);
    dismiss(sender);
    closer_.close(std::move(socket));
}

// Returns false if the sender violated the protocol or does not read its replies.
bool RequestServer::handleRequest(Sender& sender, const ReceivedFrame& frame) {
    if (frame.header.kind != FrameKind::request) return false;
    latestSize_ = frame.header.imageSize;
    Replier replier(*this, sender, frame.header.id);
    return handler_.handle(frame, sender.process, replier);
}

Channel::Sent RequestServer::reply(Sender& sender, uint64_t id, int32_t result, const MessageMemory& image) {
    latestSize_ = std::max(latestSize_, image.size());
    FrameHeader header;
    header.kind = FrameKind::reply;
    header.id = id;
    header.result = result;
    // Called before the reply is sent, so that the sender sees the flag even if it sends its next request
    // at once.
    pollMailbox(sender);
    return sender.channel.sendReply(header, image);
}

}  // namespace portability
