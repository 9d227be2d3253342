// TraceSetting: what is traced, at which level, and where the trace goes, read from a text such as
//
//     connection,exchange:3,file=/tmp/dovrel.trace
//
// Commas separate areas; "all" is every area. A colon and a digit after an area set its level (2 without
// them). "file=" comes last: the rest of the text is the path of the file. Without it the trace goes to
// standard error.
#pragma once

#include <array>
#include <string>

namespace dovrel {

/// What an entry of the trace is about.
enum class TraceArea {
    kConnection,  ///< finding, launching and waking the server, and forgetting it
    kExchange,    ///< requests and replies
    kSession      ///< operations that failed: what the error log says about them
};
constexpr size_t kTraceAreaCount = 3;

/// How much is traced. A level includes those before it.
enum class TraceLevel {
    kOff,       ///< nothing
    kFailures,  ///< failures
    kSteps,     ///< also every step, with sizes and times, but nothing that hosts and server say
    kContents   ///< also what hosts and server say, in readable form
};

struct TraceSetting {
    TraceSetting() = default;

    /// An item of the text that is neither an area nor a file becomes a problem and has no other effect.
    explicit TraceSetting(const std::string& text);

    std::array<TraceLevel, kTraceAreaCount> levels{};
    std::string file;      ///< "" for standard error
    std::string problems;  ///< the items that were not understood, separated by blanks; "" if there is none
};

const char* areaName(TraceArea area);

}  // namespace dovrel
