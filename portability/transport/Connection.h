// A sender's connection to an endpoint. Private to the layer.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "portability/posix/Deadline.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Channel.h"

namespace portability {

/// What a sender does from time to time while it waits.
class IdleCaller {
  public:
    virtual ~IdleCaller() = default;

    /// The time until it wants to be called next.
    virtual std::chrono::nanoseconds pause() const = 0;

    /// Does it; true ends the wait.
    virtual bool call() = 0;
};

/// A request that is to be sent. Refers to what its sender holds.
struct OutgoingRequest {
    const ImageMemory& image;
    int32_t mode;  // for the receiver's handler only, like the next one
    int32_t timeOutInTicks;
    Deadline deadline;
    IdleCaller* idle;  // null: just wait
};

/// A reply that came in. The image stays in place while `block` is held; without a block, until the next use
/// of the connection. Nothing is known of it but its size.
struct ReceivedReply {
    int32_t result = 0;  // of the receiving side: 0, or why it did not handle the request
    const uint8_t* image = nullptr;
    size_t size = 0;
    std::shared_ptr<const void> block;
};

/// A connection that lives on between exchanges. Requests have rising ids, and a reply is taken for an answer
/// only if it has the id of the request that waits. One thread at a time.
class Connection {
  public:
    enum class Outcome {
        done,
        notSent,    ///< the other end had gone before anything was sent; the connection is of no further use
        lost,       ///< the other end went away, or broke the rules, after the request was sent; likewise
        timedOut,   ///< the connection can be used again; the late reply will be recognised
        cancelled,  ///< by the idle caller; likewise
        noMemory    ///< nothing was sent
    };

    explicit Connection(FileDescriptor socket) : channel_(std::move(socket)) {}

    /// Hands the request over to the system. The receiver does not reply to it.
    Outcome post(const OutgoingRequest& request);

    /// Sends the request and waits for its reply. Throws std::bad_alloc.
    Outcome exchange(const OutgoingRequest& request, ReceivedReply& reply);

  private:
    Outcome sendRequest(const OutgoingRequest& request, bool wantsReply, bool& posted);
    Outcome awaitReply(const OutgoingRequest& request, bool posted, ReceivedReply& reply);
    bool waitAsleep(const OutgoingRequest& request);
    bool noteReply(const ReceivedFrame& frame);
    bool dropLateReplies(const Deadline& deadline);

    Channel channel_;
    uint64_t lastId_ = 0;
    uint64_t lastAnswered_ = 0;  // id of the last reply that came in
    size_t lastReplySize_ = 0;
    uint64_t unanswered_ = 0;  // requests whose replies nobody waits for any more
    FrameBuffer buffer_;
};

}  // namespace portability
