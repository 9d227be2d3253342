// Sends events to a running server. No function launches it.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace dovrel::tools {

/// The reply of the development server to a control event.
struct ServerState {
    struct Value {
        std::string name;  ///< for example "applications"
        std::string text;
    };

    std::vector<Value> values;          ///< in alphabetical order
    std::vector<std::string> problems;  ///< faults in the settings that were sent
};

/// Sends settings in the text form of server/README.md to the running server, and returns its reply. An empty text
/// changes nothing. Throws a ToolFailure if no server replies within the time, or if it is another server than the
/// development server.
ServerState sendSettings(const std::string& settings, std::chrono::seconds timeOut);

/// The outcome of a handshake.
struct HandshakeResult {
    int32_t status = 0;                                ///< of the platform; 0: the server answered
    std::chrono::duration<double, std::milli> time{};  ///< until the reply or the failure
};

/// Sends the event with which the library wakes the server, once, with a time-out of a second.
HandshakeResult makeHandshake();

}  // namespace dovrel::tools
