// The sender's side of a connection to an endpoint. Private to the layer.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Channel.h"

namespace portability {

/// An object that is called repeatedly while a sender waits for its reply.
class IdleCaller {
  public:
    virtual ~IdleCaller() = default;

    /// Returns the time to wait until the next call of call().
    virtual std::chrono::nanoseconds pause() const = 0;

    /// Is called on the sender's thread after each pause. Returns true if the wait must end.
    virtual bool call() = 0;
};

/// A request to be sent. It refers to memory that the sender owns.
struct OutgoingRequest {
    const MessageMemory& image;
    int32_t mode;            // passed to the receiver's handler; the transport does not use it
    int32_t timeOutInTicks;  // passed to the receiver's handler; the transport waits until `deadline`
    Deadline deadline;
    IdleCaller* idle;  // null: wait without idle calls
};

/// A received reply. The image stays valid while `block` is held. Without a block it is valid until the
/// connection is used again. Only the size of the image has been checked, not its content.
struct ReceivedReply {
    int32_t result = 0;  // from the receiver: 0, or the error why it did not handle the request
    const uint8_t* image = nullptr;
    size_t size = 0;
    std::shared_ptr<const void> block;
};

/// A connection that is used for several exchanges, one after the other. Requests have increasing ids. A
/// reply is accepted only if it has the id of the request that waits for it. Not thread-safe: one thread at
/// a time.
class Connection {
  public:
    enum class Outcome {
        done,
        notSent,    ///< the peer had exited before anything was sent; the connection cannot be used any more
        lost,       ///< the peer ended or violated the protocol after the request was sent; likewise
        timedOut,   ///< the connection can be used again; it will recognise and drop the late reply
        cancelled,  ///< the IdleCaller ended the wait; the connection can be used again, as after timedOut
        noMemory    ///< nothing was sent
    };

    explicit Connection(FileDescriptor socket) : channel_(std::move(socket)) {}

    /// Sends the request without waiting for the receiver, which does not reply to it. Waits only while the
    /// socket's buffer is full, at most until the deadline.
    Outcome post(const OutgoingRequest& request);

    /// Sends the request and waits for its reply. Sets `reply` only if the result is Outcome::done.
    /// Throws std::bad_alloc.
    Outcome exchange(const OutgoingRequest& request, ReceivedReply& reply);

    /// Tells the receiver which replies are not in use any more, if no request has told it yet.
    void sendReleased() { channel_.sendReleased(); }

  private:
    Outcome sendRequest(const OutgoingRequest& request, bool wantsReply, bool& posted);
    Outcome awaitReply(const OutgoingRequest& request, bool posted, ReceivedReply& reply);
    bool canWaitInReceive(const OutgoingRequest& request);
    bool waitAsleep(const OutgoingRequest& request);
    bool noteReply(const ReceivedFrame& frame);
    bool dropLateReplies(const Deadline& deadline);

    Channel channel_;
    uint64_t lastId_ = 0;
    uint64_t lastAnswered_ = 0;  // id of the last reply that was received
    size_t lastReplySize_ = 0;
    uint64_t unanswered_ = 0;  // number of requests that timed out or were cancelled and have no reply yet
    SpinHistory spinHistory_;
    FrameBuffer buffer_;
};

}  // namespace portability
