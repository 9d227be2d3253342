// The alert helper's end of the stream to the host.
#pragma once

#include <chrono>
#include <optional>

#include "portability/alerts/AlertMessages.h"

namespace alerthelper {

class HostStream {
  public:
    /// Uses the descriptor. The caller keeps the ownership.
    explicit HostStream(int descriptor) : descriptor_(descriptor) {}

    /// Returns whether the descriptor is a local stream socket, which only a host passes to the helper.
    bool isStream() const;

    /// Waits for the request. Returns nothing in these cases:
    /// - The stream ends, or `limit` passes, before a whole line has arrived.
    /// - AlertMessages::parseRequest rejects the line.
    /// - More data follows the line.
    std::optional<portability::AlertRequest> receive(std::chrono::milliseconds limit);

    /// Sends an event. Blocks while the stream's buffer is full. Failures are ignored: they mean that the
    /// host has exited, which HostWatch notices.
    void send(const portability::AlertEvent& event);

  private:
    int descriptor_;
};

}  // namespace alerthelper
