// Local sockets for the peers that use sockets directly. The server runs a thread for each connection.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

namespace dovrel::benchmarks {

/// Returns an exception with the text of errno.
std::runtime_error systemError(const std::string& what);

/// A socket. Closed by the destructor.
class Socket {
  public:
    explicit Socket(int descriptor) : descriptor_(descriptor) {}
    Socket(Socket&& other) noexcept : descriptor_(other.descriptor_) { other.descriptor_ = -1; }
    ~Socket();

    int get() const { return descriptor_; }

    /// Gives the descriptor to the caller, who closes it.
    int release();

  private:
    int descriptor_;
};

/// Returns the path of the server's socket.
std::string socketPath(const std::string& folder);

/// Connects to the server's socket. `type` is SOCK_STREAM or SOCK_SEQPACKET. Throws std::runtime_error.
Socket connectToServer(const std::string& folder, int type);

/// Listens, calls `ready`, and calls `serve` in a new thread for each connection. The connection is closed when
/// `serve` returns. Never returns. Throws std::runtime_error.
void serveConnections(const std::string& folder, int type, const std::function<void()>& ready,
                      const std::function<void(int)>& serve);

}  // namespace dovrel::benchmarks
