// ZeroMQ: a REQ socket and a REP socket over a local socket.
#include <zmq.h>

#include "Peer.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

void expect(bool good, const char* function) {
    if (!good) throw std::runtime_error(std::string(function) + ": " + zmq_strerror(zmq_errno()));
}

class ZmqMessage {
  public:
    ZmqMessage() { zmq_msg_init(&message_); }
    ZmqMessage(const ZmqMessage&) = delete;
    ZmqMessage& operator=(const ZmqMessage&) = delete;
    ~ZmqMessage() { zmq_msg_close(&message_); }

    zmq_msg_t* get() { return &message_; }

  private:
    zmq_msg_t message_;
};

class ZmqSocket {
  public:
    explicit ZmqSocket(int type) : context_(zmq_ctx_new()), socket_(zmq_socket(context_, type)) {
        expect(socket_ != nullptr, "zmq_socket");
        const int linger = 0;  // milliseconds that unsent messages delay the end
        zmq_setsockopt(socket_, ZMQ_LINGER, &linger, sizeof linger);
    }
    ZmqSocket(const ZmqSocket&) = delete;
    ZmqSocket& operator=(const ZmqSocket&) = delete;
    ~ZmqSocket() {
        zmq_close(socket_);
        zmq_ctx_term(context_);
    }

    void* get() { return socket_; }

  private:
    void* context_;
    void* socket_;
};

std::string address(const std::string& folder) {
    return "ipc://" + socketPath(folder);
}

class ZmqClient : public Client {
  public:
    explicit ZmqClient(const std::string& folder) : socket_(ZMQ_REQ) {
        expect(zmq_connect(socket_.get(), address(folder).c_str()) == 0, "zmq_connect");
    }

    Bytes call(Bytes request) override {
        static thread_local ZmqMessage reply;
        expect(zmq_send(socket_.get(), request.data, request.size, 0) >= 0, "zmq_send");
        expect(zmq_msg_recv(reply.get(), socket_.get(), 0) >= 0, "zmq_msg_recv");
        return {static_cast<const char*>(zmq_msg_data(reply.get())), zmq_msg_size(reply.get())};
    }

  private:
    ZmqSocket socket_;
};

void serve(const std::string& folder, const std::function<void()>& ready) {
    ZmqSocket socket(ZMQ_REP);
    expect(zmq_bind(socket.get(), address(folder).c_str()) == 0, "zmq_bind");
    ready();
    ZmqMessage message;
    for (;;) {
        expect(zmq_msg_recv(message.get(), socket.get(), 0) >= 0, "zmq_msg_recv");
        expect(zmq_msg_send(message.get(), socket.get(), 0) >= 0, "zmq_msg_send");
    }
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<ZmqClient>(folder);
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::inTurn, false, serve, connect};

}  // namespace dovrel::benchmarks
