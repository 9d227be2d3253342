// A sender's connection to an endpoint. Private to the layer.
#pragma once

#include <CoreServices/AEDataModel.h>

#include <chrono>
#include <cstdint>
#include <memory>

#include "events/Deadline.h"
#include "events/EventChannel.h"
#include "events/EventStorage.h"
#include "events/FileDescriptor.h"

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
struct EventRequest {
    const ImageMemory& image;
    AESendMode mode;
    SInt32 timeOutInTicks;
    Deadline deadline;
    IdleCaller* idle;  // null: just wait
};

struct EventReply {
    OSStatus result = noErr;              // of the receiving side: noErr, or why no handler took the event
    std::unique_ptr<EventStorage> event;  // null after an error
};

/// A connection that lives on between exchanges. Requests have rising ids, and a reply is taken for an answer
/// only if it has the id of the request that waits. One thread at a time.
class EventConnection {
  public:
    enum class Outcome {
        done,
        notSent,    ///< the other end had gone before anything was sent; the connection is of no further use
        lost,       ///< the other end went away, or broke the rules, after the request was sent; likewise
        timedOut,   ///< the connection can be used again; the late reply will be recognised
        cancelled,  ///< by the idle caller; likewise
        noMemory    ///< nothing was sent
    };

    explicit EventConnection(FileDescriptor socket) : channel_(std::move(socket)) {}

    /// Hands the event over to the system. The receiver will not answer.
    Outcome post(const EventRequest& request);

    /// Sends the event and waits for its reply. Throws std::bad_alloc.
    Outcome exchange(const EventRequest& request, EventReply& reply);

  private:
    Outcome sendRequest(const EventRequest& request, bool wantsReply, bool& posted);
    Outcome awaitReply(const EventRequest& request, bool posted, EventReply& reply);
    bool waitAsleep(const EventRequest& request);
    bool noteReply(const ReceivedFrame& frame);
    bool dropLateReplies(const Deadline& deadline);
    Outcome takeReply(const ReceivedFrame& frame, std::shared_ptr<const void> held, EventReply& reply);

    EventChannel channel_;
    uint64_t lastId_ = 0;
    uint64_t lastAnswered_ = 0;  // id of the last reply that came in
    size_t lastReplySize_ = 0;
    uint64_t unanswered_ = 0;  // requests whose replies nobody waits for any more
    FrameBuffer buffer_;
};

}  // namespace portability
