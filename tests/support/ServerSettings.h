// Settings of the development server, in the words of docs/development-server.md.
#pragma once

#include <cstdint>
#include <string>

namespace dovrel::test {

/// Both return one setting with its value.
inline std::string setting(const std::string& name, const std::string& text) {
    return "//" + name + "\nSTR:" + text + "\n";
}
inline std::string setting(const std::string& name, int64_t number) {
    return "//" + name + "\nINT:" + std::to_string(number) + "\n";
}

/// Returns the misbehaviour of that name ("late", "garbage" ...). It concerns only the exchanges of `command`, and
/// only so many of them; "" and 0 mean all.
inline std::string misbehaviour(const std::string& name, const std::string& command = "", int64_t times = 0) {
    return setting("misbehave", name) + (command.empty() ? "" : setting("misbehaveCommand", command)) +
           (times == 0 ? "" : setting("misbehaveTimes", times));
}

/// Returns the misbehaviour "error" with that code and text.
inline std::string refusal(const std::string& command, int64_t code, const std::string& text = "",
                           int64_t times = 0) {
    return misbehaviour("error", command, times) + setting("errorCode", code) +
           (text.empty() ? "" : setting("errorText", text));
}

}  // namespace dovrel::test
