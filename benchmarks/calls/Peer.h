// One way to call another process. Each row of the comparison is a program: the harness and one peer.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace dovrel::benchmarks {

struct Bytes {
    const char* data;
    size_t size;
};

/// A connection to a peer's server.
class Client {
  public:
    virtual ~Client() = default;

    /// Sends the request and waits for the reply, which has the same bytes. The reply stays valid until the next
    /// call of the same thread. That call frees it, so the measured time contains the cost of freeing.
    /// Throws std::exception if the call fails.
    virtual Bytes call(Bytes request) = 0;
};

/// How several threads use one client.
enum class Threads {
    together,  ///< call() may run in several threads at the same time
    inTurn,    ///< the harness locks a mutex around each call
    onlyOne    ///< a client belongs to the thread that made it
};

struct Peer {
    size_t largestRequest;  ///< bytes
    Threads threads;
    bool spins;  ///< both sides wait without blocking, each connection on two processors of its own

    /// Runs in the server's process. Places its socket in the folder, calls `ready` when clients can connect, and
    /// serves any number of clients until the process is killed.
    void (*serve)(const std::string& folder, const std::function<void()>& ready);

    /// Connects to the server. Throws std::exception if that fails.
    std::unique_ptr<Client> (*connect)(const std::string& folder);
};

constexpr size_t kAnySize = static_cast<size_t>(-1);

/// The peer of this program. Its source file in peers/ defines it.
extern const Peer kPeer;

}  // namespace dovrel::benchmarks
