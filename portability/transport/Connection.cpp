#include "portability/transport/Connection.h"

#include <poll.h>

#include <algorithm>

namespace portability {

Connection::Outcome Connection::post(const OutgoingRequest& request) {
    bool posted = false;
    return sendRequest(request, false, posted);
}

Connection::Outcome Connection::exchange(const OutgoingRequest& request, ReceivedReply& reply) {
    // A mailbox is not worth its cost for a connection that is used only once.
    if (lastAnswered_ != 0 && Spin::isOn()) channel_.offerMailbox();
    bool posted = false;
    const Outcome sent = sendRequest(request, true, posted);
    if (sent != Outcome::done) return sent;
    const Outcome outcome = awaitReply(request, posted, reply);
    if (outcome == Outcome::timedOut || outcome == Outcome::cancelled) ++unanswered_;
    return outcome;
}

Connection::Outcome Connection::sendRequest(const OutgoingRequest& request, bool wantsReply, bool& posted) {
    // Unread replies would fill the socket's buffer until the peer can send none.
    if (unanswered_ != 0 && !dropLateReplies(request.deadline)) return Outcome::notSent;
    const bool allAnswered = lastAnswered_ == lastId_;
    FrameHeader header;
    header.kind = FrameKind::request;
    header.id = ++lastId_;
    header.sendMode = request.mode;
    header.timeOutInTicks = request.timeOutInTicks;
    for (;;) {
        const Channel::Sent sent = wantsReply && allAnswered
                                       ? channel_.sendQuick(header, request.image, posted)
                                       : channel_.send(header, request.image, /*confirmed=*/wantsReply);
        switch (sent) {
            case Channel::Sent::done:
                return Outcome::done;
            case Channel::Sent::closed:
                return Outcome::notSent;
            case Channel::Sent::failed:
                return Outcome::noMemory;
            case Channel::Sent::full:
                break;
        }
        if (request.deadline.passed()) return Outcome::timedOut;
        waitForDescriptor(channel_.descriptor(), POLLOUT, request.deadline);
    }
}

Connection::Outcome Connection::awaitReply(const OutgoingRequest& request, bool posted,
                                           ReceivedReply& reply) {
    Spin spin(spinHistory_, std::max(request.image.size(), lastReplySize_));
    ReceivedFrame frame;
    bool looking = posted;
    // The reply has probably not arrived yet, so this thread first waits or yields to the receiver.
    bool polls = spin.again(channel_.peerPlace());
    bool waits = !polls && !looking && canWaitInReceive(request);
    const auto receive = [&] {
        // While this thread polls, most looks are only at the mailbox. Each look at the socket takes processor time
        // and locks from the receiver.
        if (looking || (polls && !spin.isSystemCallDue())) return channel_.look(frame);
        return waits ? channel_.receiveWaiting(buffer_, frame) : channel_.receive(buffer_, frame);
    };
    for (;;) {
        switch (receive()) {
            case Channel::Received::closed:
                return posted && !channel_.wasTaken() ? Outcome::notSent : Outcome::lost;
            case Channel::Received::malformed:
                return Outcome::lost;
            case Channel::Received::elsewhere:
                looking = polls = false;
                continue;
            case Channel::Received::nothing:
                polls = spin.again(channel_.peerPlace());
                if (polls && !spin.isSystemCallDue()) continue;
                if (request.deadline.passed()) return Outcome::timedOut;
                if (polls) continue;
                if (looking) channel_.setLooking(false);
                waits = canWaitInReceive(request);
                if (!looking && !waits && !waitAsleep(request)) return Outcome::cancelled;
                looking = false;
                continue;
            case Channel::Received::frame:
                break;
        }
        std::shared_ptr<const void> held = channel_.holdReply(frame);
        if (!noteReply(frame)) return Outcome::lost;
        if (frame.header.id == lastId_) {
            spin.found();
            reply = {frame.header.result, frame.image, frame.header.imageSize, std::move(held)};
            return Outcome::done;
        }
        if (unanswered_ == 0) return Outcome::lost;
        --unanswered_;
        if (request.deadline.passed()) return Outcome::timedOut;
        waits = waits && canWaitInReceive(request);
    }
}

// Returns whether waiting in the system call that receives is possible. That needs fewer system calls than to wait
// before it, but the deadline must be far.
bool Connection::canWaitInReceive(const OutgoingRequest& request) {
    return request.idle == nullptr && request.deadline.hasAtLeast(2 * Channel::kLongestWait) &&
           channel_.limitWaiting();
}

// Sleeps until the socket is readable, the deadline has passed or the next idle call is due. Returns false if
// the idle caller ends the wait.
bool Connection::waitAsleep(const OutgoingRequest& request) {
    if (request.idle == nullptr) {
        waitForDescriptor(channel_.descriptor(), POLLIN, request.deadline);
        return true;
    }
    waitForDescriptor(channel_.descriptor(), POLLIN, request.deadline.orAfter(request.idle->pause()));
    return !request.idle->call();
}

// Returns false if the frame is not a reply to a request that is still without a reply.
bool Connection::noteReply(const ReceivedFrame& frame) {
    const uint64_t id = frame.header.id;
    if (frame.header.kind != FrameKind::reply || id <= lastAnswered_ || id > lastId_) return false;
    channel_.confirmUpTo(id);
    lastAnswered_ = id;
    lastReplySize_ = frame.header.imageSize;
    return true;
}

bool Connection::dropLateReplies(const Deadline& deadline) {
    ReceivedFrame frame;
    while (unanswered_ != 0) {
        switch (channel_.receive(buffer_, frame)) {
            case Channel::Received::nothing:
            case Channel::Received::elsewhere:
                return true;
            case Channel::Received::closed:
            case Channel::Received::malformed:
                return false;
            case Channel::Received::frame:
                break;
        }
        channel_.holdReply(frame);
        if (!noteReply(frame)) return false;
        --unanswered_;
        if (deadline.passed()) return true;
    }
    return true;
}

}  // namespace portability
