#include "events/EventConnection.h"

#include <poll.h>

#include <cstring>

#include "events/Spin.h"

namespace portability {

EventConnection::Outcome EventConnection::post(const EventRequest& request) {
    return sendRequest(request, false);
}

EventConnection::Outcome EventConnection::exchange(const EventRequest& request, EventReply& reply) {
    const Outcome sent = sendRequest(request, true);
    if (sent != Outcome::done) return sent;
    const Outcome outcome = awaitReply(request, reply);
    if (outcome == Outcome::timedOut || outcome == Outcome::cancelled) ++unanswered_;
    return outcome;
}

EventConnection::Outcome EventConnection::sendRequest(const EventRequest& request, bool wantsReply) {
    // A peer whose replies nobody takes would at last have nowhere to put them.
    if (unanswered_ != 0 && !dropLateReplies(request.deadline)) return Outcome::notSent;
    FrameHeader header;
    header.kind = FrameKind::request;
    header.id = ++lastId_;
    header.sendMode = static_cast<int32_t>(request.mode);
    header.timeOutInTicks = static_cast<int32_t>(request.timeOutInTicks);
    for (;;) {
        switch (channel_.send(header, request.image, wantsReply)) {
            case EventChannel::Sent::done:
                return Outcome::done;
            case EventChannel::Sent::closed:
                return Outcome::notSent;
            case EventChannel::Sent::failed:
                return Outcome::noMemory;
            case EventChannel::Sent::full:
                break;
        }
        if (request.deadline.passed()) return Outcome::timedOut;
        waitForDescriptor(channel_.descriptor(), POLLOUT, request.deadline);
    }
}

EventConnection::Outcome EventConnection::awaitReply(const EventRequest& request, EventReply& reply) {
    Spin spin;
    ReceivedFrame frame;
    for (;;) {
        switch (channel_.receive(buffer_, frame)) {
            case EventChannel::Received::closed:
            case EventChannel::Received::malformed:
                return Outcome::lost;
            case EventChannel::Received::nothing:
                if (request.deadline.passed()) return Outcome::timedOut;
                if (!spin.again() && !wait(request)) return Outcome::cancelled;
                continue;
            case EventChannel::Received::frame:
                break;
        }
        channel_.confirmUpTo(frame.header.id);
        const std::shared_ptr<const void> held = channel_.holdReply(frame);
        if (frame.header.kind != FrameKind::reply) return Outcome::lost;
        if (frame.header.id == lastId_) {
            reply.result = frame.header.result;
            if (reply.result != noErr) return Outcome::done;
            reply.event = held == nullptr
                              ? EventStorage::copyOf(frame.image, frame.header.imageSize)
                              : std::make_unique<EventStorage>(frame.image, frame.header.imageSize, held);
            return Outcome::done;
        }
        if (!isLate(frame.header)) return Outcome::lost;
        --unanswered_;
        if (request.deadline.passed()) return Outcome::timedOut;
    }
}

// False when the sender has had enough.
bool EventConnection::wait(const EventRequest& request) {
    if (request.idle == nullptr) {
        waitForDescriptor(channel_.descriptor(), POLLIN, request.deadline);
        return true;
    }
    waitForDescriptor(channel_.descriptor(), POLLIN, request.deadline.orAfter(request.idle->pause()));
    return !request.idle->call();
}

bool EventConnection::isLate(const FrameHeader& header) const {
    return unanswered_ != 0 && header.id < lastId_;
}

bool EventConnection::dropLateReplies(const Deadline& deadline) {
    ReceivedFrame frame;
    while (unanswered_ != 0) {
        switch (channel_.receive(buffer_, frame)) {
            case EventChannel::Received::nothing:
                return true;
            case EventChannel::Received::closed:
            case EventChannel::Received::malformed:
                return false;
            case EventChannel::Received::frame:
                break;
        }
        channel_.confirmUpTo(frame.header.id);
        channel_.holdReply(frame);
        if (frame.header.kind != FrameKind::reply || frame.header.id > lastId_) return false;
        --unanswered_;
        if (deadline.passed()) return true;
    }
    return true;
}

}  // namespace portability
