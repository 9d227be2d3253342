#include "UnixSockets.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <thread>

namespace dovrel::benchmarks {

namespace {

sockaddr_un addressIn(const std::string& folder) {
    const std::string path = socketPath(folder);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) throw std::runtime_error("too long for a socket: " + path);
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

Socket newSocket(int type) {
    Socket made(socket(AF_UNIX, type | SOCK_CLOEXEC, 0));
    if (made.get() < 0) throw systemError("socket");
    return made;
}

}  // namespace

std::runtime_error systemError(const std::string& what) {
    return std::runtime_error(what + ": " + std::strerror(errno));
}

Socket::~Socket() {
    if (descriptor_ >= 0) close(descriptor_);
}

int Socket::release() {
    const int descriptor = descriptor_;
    descriptor_ = -1;
    return descriptor;
}

std::string socketPath(const std::string& folder) {
    return folder + "/socket";
}

Socket connectToServer(const std::string& folder, int type) {
    const sockaddr_un address = addressIn(folder);
    Socket connection = newSocket(type);
    if (connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw systemError("connect");
    return connection;
}

void serveConnections(const std::string& folder, int type, const std::function<void()>& ready,
                      const std::function<void(int)>& serve) {
    const sockaddr_un address = addressIn(folder);
    const Socket listener = newSocket(type);
    if (bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw systemError("bind");
    if (listen(listener.get(), 64) != 0) throw systemError("listen");
    ready();
    for (;;) {
        const int connection = accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) throw systemError("accept");
        std::thread([connection, &serve] {
            const Socket owner(connection);
            serve(connection);
        }).detach();
    }
}

}  // namespace dovrel::benchmarks
