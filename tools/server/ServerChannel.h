// Sends events to a running server. No function launches it.
#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "InterProcessCommunication/IPC_via_AE.h"

namespace dovrel::tools {

/// The reply of the development server to a control event.
struct ServerState {
    struct Value {
        std::string name;  ///< for example "applications"
        std::string text;
    };

    std::vector<Value> values;  ///< in alphabetical order, those with numbers in the order of the numbers
    std::vector<std::string> problems;  ///< faults in the settings that were sent, in their order
};

/// The longest time-out, in seconds. The platform takes it as a 32-bit number of ticks.
constexpr uint32_t kLongestTimeOut = std::numeric_limits<int32_t>::max() / serverEvent::kTicksPerSecond;

/// Sends settings in the text form of docs/development-server.md to the running server, and returns its reply. An
/// empty text changes nothing. Returns nothing if no server runs. Throws a ToolFailure if the server does not reply
/// within the time (at most kLongestTimeOut), or if it is another server than the development server.
std::optional<ServerState> sendSettings(const std::string& settings, std::chrono::seconds timeOut);

/// The outcome of a handshake.
struct HandshakeResult {
    int32_t status = 0;                                ///< of the platform; 0: the server answered
    std::chrono::duration<double, std::milli> time{};  ///< until the reply or the failure
};

/// Sends the event with which the library wakes the server, once, with a time-out of a second.
HandshakeResult makeHandshake();

/// Returns whether a server of this user and this system root has the endpoint, whether or not it answers. A server
/// under an interpreter is reachable, but findServers() does not find it. If the server hangs, this takes a second.
bool isServerReachable();

}  // namespace dovrel::tools
