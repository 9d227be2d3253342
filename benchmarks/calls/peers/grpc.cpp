// gRPC over a local socket: unary calls to a synchronous server.
#include <grpcpp/grpcpp.h>

#include "Peer.h"
#include "UnixSockets.h"
#include "echo.grpc.pb.h"

namespace dovrel::benchmarks {

namespace {

std::string address(const std::string& folder) {
    return "unix:" + socketPath(folder);
}

class EchoService final : public calls::Echo::Service {
    grpc::Status Echo(grpc::ServerContext*, const calls::Bytes* request, calls::Bytes* reply) override {
        reply->set_bytes(request->bytes());
        return grpc::Status::OK;
    }
};

std::shared_ptr<grpc::Channel> channelTo(const std::string& folder) {
    grpc::ChannelArguments arguments;
    arguments.SetMaxReceiveMessageSize(-1);                   // 4 MiB otherwise
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);  // otherwise, channels share their connections
    return grpc::CreateCustomChannel(address(folder), grpc::InsecureChannelCredentials(), arguments);
}

class GrpcClient : public Client {
  public:
    explicit GrpcClient(const std::string& folder) : stub_(calls::Echo::NewStub(channelTo(folder))) {}

    Bytes call(Bytes request) override {
        static thread_local calls::Bytes argument;
        static thread_local calls::Bytes reply;
        argument.set_bytes(request.data, request.size);
        grpc::ClientContext context;
        const grpc::Status status = stub_->Echo(&context, argument, &reply);
        if (!status.ok()) throw std::runtime_error(status.error_message());
        return {reply.bytes().data(), reply.bytes().size()};
    }

  private:
    std::unique_ptr<calls::Echo::Stub> stub_;
};

void serve(const std::string& folder, const std::function<void()>& ready) {
    EchoService service;
    grpc::ServerBuilder builder;
    builder.AddListeningPort(address(folder), grpc::InsecureServerCredentials());
    builder.SetMaxReceiveMessageSize(-1);
    builder.RegisterService(&service);
    const std::unique_ptr<grpc::Server> server = builder.BuildAndStart();
    if (server == nullptr) throw std::runtime_error("the server could not be started");
    ready();
    server->Wait();
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<GrpcClient>(folder);
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::together, false, serve, connect};

}  // namespace dovrel::benchmarks
