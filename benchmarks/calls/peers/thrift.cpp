// Thrift: its binary protocol over a buffered local socket, and a server with a thread for each connection.
#include <thrift/protocol/TBinaryProtocol.h>
#include <thrift/server/TThreadedServer.h>
#include <thrift/transport/TBufferTransports.h>
#include <thrift/transport/TServerSocket.h>
#include <thrift/transport/TSocket.h>

#include <climits>

#include "Echo.h"
#include "Peer.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

using namespace apache::thrift;

// With the default of 512 bytes, each system call reads only 512 bytes.
constexpr uint32_t kBuffer = 64 << 10;

class BufferFactory : public transport::TTransportFactory {
  public:
    std::shared_ptr<transport::TTransport> getTransport(
        std::shared_ptr<transport::TTransport> socket) override {
        return std::make_shared<transport::TBufferedTransport>(socket, kBuffer);
    }
};

class EchoHandler : public calls::EchoIf {
  public:
    void echo(std::string& reply, const std::string& bytes) override { reply = bytes; }
};

class ReadyHandler : public server::TServerEventHandler {
  public:
    explicit ReadyHandler(const std::function<void()>& ready) : ready_(ready) {}
    void preServe() override { ready_(); }

  private:
    const std::function<void()>& ready_;
};

class ThriftClient : public Client {
  public:
    explicit ThriftClient(const std::string& folder)
        : transport_(std::make_shared<transport::TBufferedTransport>(
              std::make_shared<transport::TSocket>(socketPath(folder)), kBuffer)),
          client_(std::make_shared<protocol::TBinaryProtocol>(transport_)) {
        transport_->open();
    }

    Bytes call(Bytes request) override {
        static thread_local std::string reply;
        static thread_local std::string argument;
        argument.assign(request.data, request.size);
        client_.echo(reply, argument);
        return {reply.data(), reply.size()};
    }

  private:
    std::shared_ptr<transport::TTransport> transport_;
    calls::EchoClient client_;
};

void serve(const std::string& folder, const std::function<void()>& ready) {
    server::TThreadedServer server(std::make_shared<calls::EchoProcessor>(std::make_shared<EchoHandler>()),
                                   std::make_shared<transport::TServerSocket>(socketPath(folder)),
                                   std::make_shared<BufferFactory>(),
                                   std::make_shared<protocol::TBinaryProtocolFactory>());
    server.setServerEventHandler(std::make_shared<ReadyHandler>(ready));
    server.serve();
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<ThriftClient>(folder);
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::inTurn, false, serve, connect};

}  // namespace dovrel::benchmarks
