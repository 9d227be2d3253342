// nng: a req socket and a rep socket over a local socket.
#include <nng/nng.h>
#include <nng/protocol/reqrep0/rep.h>
#include <nng/protocol/reqrep0/req.h>

#include "Peer.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

void expect(int result, const char* function) {
    if (result != 0) throw std::runtime_error(std::string(function) + ": " + nng_strerror(result));
}

class NngSocket {
  public:
    explicit NngSocket(int (*open)(nng_socket*)) {
        expect(open(&socket_), "opening a socket");
        expect(nng_socket_set_size(socket_, NNG_OPT_RECVMAXSZ, 0), "nng_socket_set_size");  // 1 MiB otherwise
    }
    NngSocket(const NngSocket&) = delete;
    NngSocket& operator=(const NngSocket&) = delete;
    ~NngSocket() { nng_close(socket_); }

    nng_socket get() const { return socket_; }

  private:
    nng_socket socket_;
};

struct MessageDeleter {
    void operator()(nng_msg* message) const { nng_msg_free(message); }
};
using Message = std::unique_ptr<nng_msg, MessageDeleter>;

std::string address(const std::string& folder) {
    return "ipc://" + socketPath(folder);
}

// Takes the message if it succeeds.
void send(const NngSocket& socket, Message message) {
    expect(nng_sendmsg(socket.get(), message.get(), 0), "nng_sendmsg");
    message.release();
}

Message receive(const NngSocket& socket) {
    nng_msg* message = nullptr;
    expect(nng_recvmsg(socket.get(), &message, 0), "nng_recvmsg");
    return Message(message);
}

class NngClient : public Client {
  public:
    explicit NngClient(const std::string& folder) : socket_(nng_req0_open) {
        expect(nng_dial(socket_.get(), address(folder).c_str(), nullptr, 0), "nng_dial");
    }

    Bytes call(Bytes request) override {
        static thread_local Message reply;
        reply.reset();
        nng_msg* made = nullptr;
        expect(nng_msg_alloc(&made, 0), "nng_msg_alloc");
        Message message(made);
        expect(nng_msg_append(made, request.data, request.size), "nng_msg_append");
        send(socket_, std::move(message));
        reply = receive(socket_);
        return {static_cast<const char*>(nng_msg_body(reply.get())), nng_msg_len(reply.get())};
    }

  private:
    NngSocket socket_;
};

void serve(const std::string& folder, const std::function<void()>& ready) {
    const NngSocket socket(nng_rep0_open);
    expect(nng_listen(socket.get(), address(folder).c_str(), nullptr, 0), "nng_listen");
    ready();
    for (;;)
        send(socket, receive(socket));
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<NngClient>(folder);
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::inTurn, false, serve, connect};

}  // namespace dovrel::benchmarks
