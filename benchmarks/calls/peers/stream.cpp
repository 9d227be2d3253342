// R, to which all rows are compared: a blocking exchange over a local stream socket. Each message is a length of
// 8 bytes and the data.
#include <sys/socket.h>

#include <vector>

#include "Peer.h"
#include "StreamMessages.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

bool readGrowing(int connection, std::vector<char>& buffer, uint64_t& size) {
    if (!readAll(connection, &size, sizeof size)) return false;
    if (buffer.size() < size) buffer.resize(size);
    return readAll(connection, buffer.data(), size);
}

class StreamClient : public Client {
  public:
    explicit StreamClient(Socket connection) : connection_(std::move(connection)) {}

    Bytes call(Bytes request) override {
        static thread_local std::vector<char> buffer;
        uint64_t size = 0;
        if (!writeMessage(connection_.get(), request.data, request.size) ||
            !readGrowing(connection_.get(), buffer, size))
            throw std::runtime_error("the server has closed the connection");
        return {buffer.data(), size};
    }

  private:
    Socket connection_;
};

void echo(int connection) {
    std::vector<char> buffer;
    uint64_t size = 0;
    while (readGrowing(connection, buffer, size) && writeMessage(connection, buffer.data(), size)) {
    }
}

void serve(const std::string& folder, const std::function<void()>& ready) {
    serveConnections(folder, SOCK_STREAM, ready, echo);
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<StreamClient>(connectToServer(folder, SOCK_STREAM));
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::inTurn, false, serve, connect};

}  // namespace dovrel::benchmarks
