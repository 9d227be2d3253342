// The ways in which the server can misbehave on request, by name. For tests of clients.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace merrowd {

/// The fault in an exchange of data.
enum class Fault {
    none,
    late,          ///< answers normally after a delay
    silent,        ///< never answers this or a later request: the server hangs
    vanishBefore,  ///< ends before it carries out the request
    vanishDuring,  ///< carries out the request and ends before it answers
    vanishAfter,   ///< answers and then ends
    cut,           ///< answers with the first bytes of the reply only
    garbage,       ///< answers with bytes that are not a structured block
    empty,         ///< answers with no bytes
    noParameter,   ///< sends a reply without a direct parameter
    failedEvent,   ///< the event fails with a status of the platform
    error,         ///< answers every request with an exception and does not carry it out
    message,       ///< adds a message for the user to the replies that can contain one
    huge           ///< answers methods, commands and information requests with a huge result
};

/// How the handshake is answered.
enum class Handshake {
    answered,
    silent,      ///< never: the server hangs
    empty,       ///< with no bytes
    noParameter  ///< with a reply that has no direct parameter
};

/// The selected fault and the exchanges in which it occurs.
struct Misbehaviour {
    Fault fault = Fault::none;
    uint32_t command = 0;  ///< only in exchanges of this command; 0: in all exchanges
    uint32_t skip = 0;     ///< this number of such exchanges are handled normally first
    uint32_t times = 0;    ///< the fault occurs this often; 0: without limit
    uint32_t struck = 0;   ///< how often it has occurred

    std::chrono::milliseconds delay{500};         ///< for late
    uint32_t cutTo = 0;                           ///< for cut: size of the reply in bytes
    uint32_t errorCode = 0;                       ///< for error
    std::string errorText = "This is a test.";    ///< for error
    uint32_t messageFlags = 1;                    ///< for message
    std::string messageText = "This is a test.";  ///< for message
    uint32_t hugeSize = 64u << 20;                ///< for huge: size in bytes
    int16_t eventStatus = -1;                     ///< for failedEvent

    /// Returns whether the fault occurs in the exchange that begins now, and counts the exchange.
    /// `exchangeCommand` is the command of the exchange, 0 if it is not known.
    bool strikes(uint32_t exchangeCommand);
};

}  // namespace merrowd
