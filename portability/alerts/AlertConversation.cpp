#include "portability/alerts/AlertConversation.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "portability/alerts/AlertHelper.h"
#include "portability/processes/DetachedProcess.h"
#include "portability/processes/PreparedProgram.h"

namespace portability {

AlertConversation::AlertConversation(const AlertRequest& request, long longestStart)
    : buttons_(request.buttons.size()), deadline_(Deadline::afterTicks(longestStart)) {
    if (!start() || !send(AlertMessages::compose(request))) socket_.reset();
}

bool AlertConversation::start() {
    const std::string helper = usableAlertHelper();
    int ends[2];
    if (helper.empty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
    socket_ = aboveStandardStreams(ends[0]);
    const FileDescriptor helpersEnd = aboveStandardStreams(ends[1]);
    return socket_ && helpersEnd &&
           helper_.start({helper,
                          {helper},
                          environmentWithout(std::string()),
                          {kNullDevice, kNullDevice, kNullDevice, helpersEnd.get()},
                          true}) == 0;
}

AlertConversation::~AlertConversation() {
    socket_.reset();
    helper_.waitForEnd(Deadline::afterTicks(kLongestAlertEnd));
}

// Returns false once the deadline has passed.
bool AlertConversation::wait(short events) const {
    waitForDescriptor(socket_.get(), events, deadline_);
    return !deadline_.passed();
}

bool AlertConversation::send(const std::string& bytes) {
    for (size_t sent = 0; sent < bytes.size();) {
        const ssize_t count =
            ::send(socket_.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            sent += static_cast<size_t>(count);
        } else if (errno != EINTR && (errno != EAGAIN || !wait(POLLOUT))) {
            return false;
        }
    }
    return true;
}

bool AlertConversation::receive() {
    std::array<char, 4096> bytes;
    for (;;) {
        const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count > 0) return lines_.append(bytes.data(), static_cast<size_t>(count));
        if (count == 0 || (errno != EINTR && (errno != EAGAIN || !wait(POLLIN)))) return false;
    }
}

std::optional<AlertEvent> AlertConversation::next() {
    if (!socket_) return std::nullopt;
    std::optional<std::string> line;
    while (!(line = lines_.next())) {
        if (!receive()) return std::nullopt;
    }
    const std::optional<AlertEvent> event = AlertMessages::parseEvent(*line, buttons_);
    // The alert is on the screen. There is no limit for the user's answer.
    if (event && event->kind == AlertEvent::Kind::shown) deadline_ = Deadline::never();
    return event;
}

std::optional<size_t> runAlert(const AlertRequest& request, void (*onHelp)(void*), void* context) noexcept {
    try {
        AlertConversation conversation(request);
        while (const std::optional<AlertEvent> event = conversation.next()) {
            if (event->kind == AlertEvent::Kind::pressed) return event->button;
            if (event->kind == AlertEvent::Kind::help) onHelp(context);
        }
    } catch (...) {
        // Memory has run out.
    }
    return std::nullopt;
}

}  // namespace portability
