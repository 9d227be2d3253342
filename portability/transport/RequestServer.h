// The receiving side of an endpoint. Private to the layer.
#pragma once

#include <sys/types.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <unordered_map>

#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Channel.h"
#include "portability/transport/Endpoint.h"
#include "portability/transport/RequestHandler.h"
#include "portability/transport/Spin.h"

namespace portability {

/// Accepts any number of senders at an endpoint and passes their requests to the handler, one at a time, on
/// the thread that calls serve().
///
/// No sender can block the others: the server never waits for a particular sender, it closes descriptors of
/// senders on another thread, and it disconnects a sender that does not read its replies. It refuses new senders
/// when half of its descriptors, or all but 512 of them, are used. The requests of one sender are handled in the
/// order in which they were sent. Senders take turns.
class RequestServer {
  public:
    /// Takes the ownership of the claim. With an empty claim the server has no senders and only waits.
    /// `wakeDescriptor`, `handler` and `isEnding` stay the caller's and must outlive the server.
    ///
    /// `isEnding` becomes true when the application has decided to end. From then on the server accepts no
    /// sender and receives no request. Requests that wait at that moment are lost with their connections
    /// when the server is destroyed, so their senders notice that the application has ended.
    RequestServer(EndpointClaim claim, int wakeDescriptor, RequestHandler& handler,
                  const std::atomic<bool>& isEnding);
    RequestServer(const RequestServer&) = delete;
    RequestServer& operator=(const RequestServer&) = delete;
    ~RequestServer();

    /// Returns false if file descriptors ran out during construction. The server cannot be used then.
    bool isReady() const { return ready_; }

    /// Waits until a request has arrived or the wake descriptor is readable, and handles at most one request
    /// of each sender. Returns true if the wake descriptor is readable. Returns after the request that makes
    /// the application end.
    ///
    /// After a request it first polls for the next one before it sleeps. During that time, whose length Spin
    /// determines, it may not notice the wake descriptor.
    bool serve();

  private:
    class Replier;
    struct Sender {
        Sender(FileDescriptor socket, DescriptorCloser& closer, pid_t itsProcess)
            : descriptor(socket.get()), channel(std::move(socket), &closer), process(itsProcess) {}
        const int descriptor;
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
    Spin::Peer peerPlace() const;
    Round handleReady(int timeoutMilliseconds);
    bool handleMail();
    bool stopLooking();
    void pollMailbox(Sender& sender);
    bool isLookingFor(const Sender& sender) const;
    void acceptSenders();
    void refuseSender();
    bool handlePosted(Sender& sender);
    bool handleNextRequest(Sender& sender);
    bool handle(Sender& sender, Channel::Received received, const ReceivedFrame& frame);
    bool handleRequest(Sender& sender, const ReceivedFrame& frame);
    Channel::Sent reply(Sender& sender, uint64_t id, int32_t result, const MessageMemory& image);
    void dismiss(Sender& sender);
    void refuse(Sender& sender);

    EndpointClaim claim_;
    RequestHandler& handler_;
    const int wake_;
    const std::atomic<bool>& isEnding_;
    FileDescriptor epoll_;
    FileDescriptor spare_;  // closed for a moment to reject a sender when descriptors have run out
    bool ready_ = false;
    DescriptorCloser closer_;
    std::unordered_map<int, std::unique_ptr<Sender>> senders_;
    Sender* latest_ = nullptr;  // the one whose request was handled last, if it is still connected
    std::array<Sender*, kMostLookedFor> looking_{};  // the senders whose mailboxes we poll
    size_t latestSize_ = 0;  // size of the larger image of the last request and its reply
    size_t lookingCount_ = 0;
    int streak_ = 0;  // requests handled since all senders had a turn
    SpinHistory spinHistory_;
    FrameBuffer buffer_;
};

}  // namespace portability
