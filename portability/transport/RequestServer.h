// The receiving side of an endpoint. Private to the layer.
#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <memory>
#include <unordered_map>

#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Channel.h"
#include "portability/transport/Endpoint.h"
#include "portability/transport/RequestHandler.h"
#include "portability/transport/Spin.h"

namespace portability {

/// Accepts any number of senders at an endpoint and passes their requests to the handler one at a time, on
/// the thread that calls it. No sender can hold up the others: nothing here waits for one of them, and one
/// that does not take its replies loses its connection. Requests of one sender are handled in the order in
/// which it sent them; senders take turns.
class RequestServer {
  public:
    /// Without a claim it has no senders and only waits. The caller keeps `wakeDescriptor` and `handler`,
    /// which must outlive the server.
    RequestServer(EndpointClaim claim, int wakeDescriptor, RequestHandler& handler);
    RequestServer(const RequestServer&) = delete;
    RequestServer& operator=(const RequestServer&) = delete;
    ~RequestServer();

    /// False when the system had no descriptors left for it; it cannot be used then.
    bool isReady() const { return ready_; }

    /// Waits until an event has arrived or the wake descriptor can be read from, and handles at most one
    /// event of each sender. True when the wake descriptor can be read from. After an event it first looks
    /// for the next one without going to sleep; the wake descriptor can then go unnoticed for as long as Spin
    /// says.
    bool serve();

  private:
    class Replier;
    struct Sender {
        Sender(FileDescriptor socket, pid_t itsProcess) : channel(std::move(socket)), process(itsProcess) {}
        Channel channel;
        const pid_t process;
    };

    static constexpr size_t kMostLookedFor = 8;

    struct Round {
        bool woken = false;
        bool handled = false;
    };

    bool watch(int descriptor);
    Round spinForNext();
    Round handleReady(int timeoutMilliseconds);
    bool handleMail();
    bool stopLooking();
    void lookFor(Sender& sender);
    bool isLookingFor(int descriptor) const;
    void acceptSenders();
    void refuseSender();
    bool handleOneOf(int descriptor);
    bool handle(Sender& sender, Channel::Received received, const ReceivedFrame& frame);
    bool handleRequest(Sender& sender, const ReceivedFrame& frame);
    Channel::Sent reply(Sender& sender, uint64_t id, int32_t result, const ImageMemory& image);
    void dismiss(int descriptor);

    EndpointClaim claim_;
    RequestHandler& handler_;
    const int wake_;
    FileDescriptor epoll_;
    FileDescriptor spare_;  // given up for a moment to refuse a sender when descriptors have run out
    bool ready_ = false;
    std::unordered_map<int, std::unique_ptr<Sender>> senders_;
    int latest_ = -1;  // the sender whose event was handled last, if it is still here
    std::array<int, kMostLookedFor> looking_{};  // the senders that know that we look into their mailboxes
    size_t latestSize_ = 0;                      // of the larger image of the latest event and its reply
    size_t lookingCount_ = 0;
    int streak_ = 0;  // events handled since all senders had a turn
    FrameBuffer buffer_;
};

}  // namespace portability
