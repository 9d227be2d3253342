// TraceSetting: what is to be traced, how much of it, and where to, read from a text such as
//
//     connection,exchange:3,file=/tmp/dovrel.trace
//
// Commas separate areas; "all" is every area. A colon and a digit behind an area set its level (2 where there
// is none). "file=" comes last: the rest of the text is the path of the file. Without it the trace goes to
// standard error.
#pragma once

#include <array>
#include <string>

namespace dovrel {

/// What a line of the trace is about.
enum class TraceArea {
    kConnection,  ///< finding, launching and waking the server, and forgetting it
    kExchange     ///< requests and their answers
};
constexpr size_t kTraceAreaCount = 2;

/// How much is traced; a level includes those before it.
enum class TraceLevel {
    kOff,       ///< nothing
    kFailures,  ///< what fails
    kSteps,     ///< everything that is done, its sizes and times, but nothing of what hosts pass
    kContents   ///< requests and answers in readable form, too
};

struct TraceSetting {
    TraceSetting() = default;

    /// What stands in the text and is neither an area nor a file becomes a problem, and changes nothing else.
    explicit TraceSetting(const std::string& text);

    std::array<TraceLevel, kTraceAreaCount> levels{};
    std::string file;      ///< "" for standard error
    std::string problems;  ///< what was not understood, separated by blanks; "" when all was
};

const char* nameOf(TraceArea area);

}  // namespace dovrel
