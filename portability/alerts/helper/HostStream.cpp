#include "portability/alerts/helper/HostStream.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <string>

#include "portability/alerts/AlertLines.h"

namespace alerthelper {
namespace {

using portability::AlertLines;
using portability::AlertMessages;
using Clock = std::chrono::steady_clock;

int socketOption(int descriptor, int option) {
    int value = -1;
    socklen_t size = sizeof value;
    return getsockopt(descriptor, SOL_SOCKET, option, &value, &size) == 0 ? value : -1;
}

bool isReadableBefore(Clock::time_point end, int descriptor) {
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left < 0) return false;
        pollfd stream = {descriptor, POLLIN, 0};
        const int ready = poll(&stream, 1, static_cast<int>(left) + 1);
        if (ready > 0) return true;
        if (ready < 0 && errno != EINTR) return false;
    }
}

}  // namespace

bool HostStream::isStream() const {
    return socketOption(descriptor_, SO_DOMAIN) == AF_UNIX &&
           socketOption(descriptor_, SO_TYPE) == SOCK_STREAM;
}

std::optional<portability::AlertRequest> HostStream::receive(std::chrono::milliseconds limit) {
    const auto end = Clock::now() + limit;
    AlertLines lines;
    std::array<char, 65536> piece;
    while (isReadableBefore(end, descriptor_)) {
        const ssize_t count = recv(descriptor_, piece.data(), piece.size(), MSG_DONTWAIT);
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (count <= 0 || !lines.append(piece.data(), static_cast<size_t>(count))) return std::nullopt;
        if (const auto line = lines.next()) {
            return lines.hasRest() ? std::nullopt : AlertMessages::parseRequest(*line);
        }
    }
    return std::nullopt;
}

void HostStream::send(const portability::AlertEvent& event) {
    const std::string line = AlertMessages::compose(event);
    size_t sent = 0;
    while (sent < line.size()) {
        const ssize_t count = ::send(descriptor_, line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) return;
        if (count > 0) sent += static_cast<size_t>(count);
    }
}

}  // namespace alerthelper
