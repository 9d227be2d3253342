// The alert helper's end of the stream to the host.
#pragma once

#include <chrono>
#include <optional>

#include "portability/alerts/AlertMessages.h"

namespace alerthelper {

class HostStream {
  public:
    /// Uses the descriptor, which stays the caller's.
    explicit HostStream(int descriptor) : descriptor_(descriptor) {}

    /// Whether the descriptor is a local stream socket, as only a host hands it over.
    bool isStream() const;

    /// Waits for the request. Returns nothing if the stream ends or `limit` passes before a whole line has
    /// arrived, if the line is refused (AlertMessages::parseRequest), or if anything follows it.
    std::optional<portability::AlertRequest> receive(std::chrono::milliseconds limit);

    /// Blocks while the stream is full. Failures are ignored: they mean that the host has gone, which
    /// HostWatch notices.
    void send(const portability::AlertEvent& event);

  private:
    int descriptor_;
};

}  // namespace alerthelper
