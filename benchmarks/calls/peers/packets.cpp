// Bare packets: one SOCK_SEQPACKET message each way, without a length or anything else around the data.
#include <sys/socket.h>

#include <vector>

#include "Peer.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

// A packet must fit into the send buffer, whose default limit is 208 KiB.
constexpr size_t kLargestPacket = size_t{64} << 10;

class PacketClient : public Client {
  public:
    explicit PacketClient(Socket connection) : connection_(std::move(connection)) {}

    Bytes call(Bytes request) override {
        static thread_local std::vector<char> buffer(kLargestPacket);
        if (send(connection_.get(), request.data, request.size, MSG_NOSIGNAL) < 0) throw systemError("send");
        const ssize_t size = recv(connection_.get(), buffer.data(), buffer.size(), 0);
        if (size <= 0) throw systemError("recv");
        return {buffer.data(), static_cast<size_t>(size)};
    }

  private:
    Socket connection_;
};

void echo(int connection) {
    std::vector<char> buffer(kLargestPacket);
    for (;;) {
        const ssize_t size = recv(connection, buffer.data(), buffer.size(), 0);
        if (size <= 0 || send(connection, buffer.data(), static_cast<size_t>(size), MSG_NOSIGNAL) < 0) return;
    }
}

void serve(const std::string& folder, const std::function<void()>& ready) {
    serveConnections(folder, SOCK_SEQPACKET, ready, echo);
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<PacketClient>(connectToServer(folder, SOCK_SEQPACKET));
}

}  // namespace

const Peer kPeer = {kLargestPacket, Threads::inTurn, false, serve, connect};

}  // namespace dovrel::benchmarks
