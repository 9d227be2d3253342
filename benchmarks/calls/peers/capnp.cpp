// Cap'n Proto: calls of an interface over a local socket, with the library's own event loop on both sides.
#include <capnp/ez-rpc.h>

#include <cstring>
#include <optional>

#include "Peer.h"
#include "UnixSockets.h"
#include "echo.capnp.h"

namespace dovrel::benchmarks {

namespace {

std::string address(const std::string& folder) {
    return "unix:" + socketPath(folder);
}

// The default limit is 64 MiB in one message.
capnp::ReaderOptions withoutLimit() {
    capnp::ReaderOptions options;
    options.traversalLimitInWords = UINT64_MAX;
    return options;
}

// The library's exceptions are not those of the standard library.
template <class Work>
auto translatingFailures(Work work) {
    std::optional<decltype(work())> result;
    KJ_IF_MAYBE (failure, kj::runCatchingExceptions([&] { result.emplace(work()); })) {
        throw std::runtime_error(failure->getDescription().cStr());
    }
    return std::move(*result);
}

class EchoServer final : public calls::Echo::Server {
    kj::Promise<void> echo(EchoContext context) override {
        const capnp::Data::Reader bytes = context.getParams().getBytes();
        const capnp::MessageSize size{bytes.size() / sizeof(capnp::word) + 8, 0};
        context.getResults(size).setBytes(bytes);
        return kj::READY_NOW;
    }
};

using Reply = capnp::Response<calls::Echo::EchoResults>;

class CapnpClient : public Client {
  public:
    explicit CapnpClient(const std::string& folder)
        : rpc_(address(folder), 0, withoutLimit()), echo_(rpc_.getMain<calls::Echo>()) {}
    ~CapnpClient() noexcept override = default;  // the library's destructors may throw

    Bytes call(Bytes request) override {
        reply_.reset();
        reply_.emplace(translatingFailures([&] {
            auto call = echo_.echoRequest(capnp::MessageSize{request.size / sizeof(capnp::word) + 8, 0});
            std::memcpy(call.initBytes(static_cast<capnp::uint>(request.size)).begin(), request.data,
                        request.size);
            return call.send().wait(rpc_.getWaitScope());
        }));
        const capnp::Data::Reader bytes = reply_->getBytes();
        return {bytes.asChars().begin(), bytes.size()};
    }

  private:
    capnp::EzRpcClient rpc_;
    calls::Echo::Client echo_;
    std::optional<Reply> reply_;
};

void serve(const std::string& folder, const std::function<void()>& ready) {
    capnp::EzRpcServer server(kj::heap<EchoServer>(), address(folder), 0, withoutLimit());
    server.getPort().wait(server.getWaitScope());  // it listens now
    ready();
    kj::NEVER_DONE.wait(server.getWaitScope());
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<CapnpClient>(folder);
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::onlyOne, false, serve, connect};

}  // namespace dovrel::benchmarks
