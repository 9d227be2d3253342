// What the server can be told to do wrong, by name. For the tests of whoever writes a client.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace merrowd {

/// What becomes of an exchange of data.
enum class Fault {
    none,
    late,          ///< answers as always, after a delay
    silent,        ///< never answers, nor anything after it: the server hangs
    vanishBefore,  ///< ends before it has done anything
    vanishDuring,  ///< does what it was asked for and ends before the answer leaves
    vanishAfter,   ///< answers, then ends
    cut,           ///< only the first bytes of the answer
    garbage,       ///< bytes that are no answer
    empty,         ///< an answer of no bytes
    noParameter,   ///< a reply without anything in it
    failedEvent,   ///< the event itself fails with a status of the platform
    error,         ///< an exception answer, whatever was asked for; nothing is done
    message,       ///< a message for the user in the answers that can carry one
    huge           ///< the result of methods, commands and information requests is huge
};

/// What becomes of the handshake.
enum class Handshake {
    answered,
    silent,      ///< never answered: the server hangs
    empty,       ///< answered with no bytes
    noParameter  ///< answered with nothing in the reply
};

/// The fault that is on, and when it strikes.
struct Misbehaviour {
    Fault fault = Fault::none;
    uint32_t command = 0;  ///< only in exchanges of that command; 0: in all of them
    uint32_t skip = 0;     ///< so many of those exchanges pass undisturbed first
    uint32_t times = 0;    ///< it strikes that often; 0: always
    uint32_t struck = 0;   ///< so often it has struck

    std::chrono::milliseconds delay{500};         ///< late
    uint32_t cutTo = 0;                           ///< cut: bytes that are left
    uint32_t errorCode = 0;                       ///< error
    std::string errorText = "This is a test.";    ///< error
    uint32_t messageFlags = 1;                    ///< message
    std::string messageText = "This is a test.";  ///< message
    uint32_t hugeSize = 64u << 20;                ///< huge: bytes
    int16_t eventStatus = -1;                     ///< failedEvent

    /// Whether the exchange that begins now, of that command (0: not known), is one in which the fault
    /// strikes. Counts.
    bool strikes(uint32_t exchangeCommand);
};

}  // namespace merrowd
