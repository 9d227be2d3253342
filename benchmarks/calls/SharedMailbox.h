// Memory that two processes share, with room for one request and one reply: the lower bound of what a call costs.
//
// The client copies its request in, the server copies it into the room of the reply, and the client copies
// the reply out. `Wait` decides how a side waits until the other side has changed the state.
#pragma once

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <vector>

#include "Peer.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

constexpr size_t kRoom = size_t{16} << 20;  // for a request, and the same for a reply

struct Mailbox {
    enum State : uint32_t { kEmpty, kRequest, kReply, kClosed };

    alignas(64) std::atomic<uint32_t> state;
    uint64_t size;
    alignas(4096) char request[kRoom];
    char reply[kRoom];
};

/// A mapping of a mailbox.
class MappedMailbox {
  public:
    explicit MappedMailbox(int memory)
        : mapped_(mmap(nullptr, sizeof(Mailbox), PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0)) {
        if (mapped_ == MAP_FAILED) throw systemError("mmap");
    }
    MappedMailbox(const MappedMailbox&) = delete;
    MappedMailbox& operator=(const MappedMailbox&) = delete;
    ~MappedMailbox() { munmap(mapped_, sizeof(Mailbox)); }

    Mailbox* operator->() const { return static_cast<Mailbox*>(mapped_); }

  private:
    void* mapped_;
};

/// Sends and receives a file descriptor over a stream socket. Throw std::runtime_error.
void sendDescriptor(int connection, int descriptor);
Socket receiveDescriptor(int connection);

/// Returns new memory of the size of a mailbox.
Socket newMailboxMemory();

/// `Wait` has two static functions: `until(state, value)` returns when the state has that value or is kClosed,
/// and `tell(state, value)` sets the state and wakes the other side.
template <class Wait>
class MailboxClient : public Client {
  public:
    explicit MailboxClient(const std::string& folder)
        : connection_(connectToServer(folder, SOCK_STREAM)),
          memory_(newMailboxMemory()),
          box_(memory_.get()) {
        sendDescriptor(connection_.get(), memory_.get());
    }
    ~MailboxClient() override { Wait::tell(box_->state, Mailbox::kClosed); }

    Bytes call(Bytes request) override {
        static thread_local std::vector<char> buffer;
        std::memcpy(box_->request, request.data, request.size);
        box_->size = request.size;
        Wait::tell(box_->state, Mailbox::kRequest);
        Wait::until(box_->state, Mailbox::kReply);
        const size_t size = box_->size;
        if (buffer.size() < size) buffer.resize(size);
        std::memcpy(buffer.data(), box_->reply, size);
        return {buffer.data(), size};
    }

  private:
    Socket connection_;
    Socket memory_;
    MappedMailbox box_;
};

template <class Wait>
void serveMailbox(int connection) {
    const MappedMailbox box(receiveDescriptor(connection).get());
    for (;;) {
        Wait::until(box->state, Mailbox::kRequest);
        if (box->state.load() == Mailbox::kClosed) return;
        std::memcpy(box->reply, box->request, box->size);
        Wait::tell(box->state, Mailbox::kReply);
    }
}

template <class Wait>
Peer mailboxPeer(bool spins) {
    return {kRoom, Threads::inTurn, spins,
            [](const std::string& folder, const std::function<void()>& ready) {
                serveConnections(folder, SOCK_STREAM, ready, serveMailbox<Wait>);
            },
            [](const std::string& folder) -> std::unique_ptr<Client> {
                return std::make_unique<MailboxClient<Wait>>(folder);
            }};
}

}  // namespace dovrel::benchmarks
