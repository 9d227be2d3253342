// TraceSetting: which areas are traced, at which level, and to which file. It is read from a text such as
//
//     connection,exchange:3,time,file=/tmp/dovrel.trace
//
// Commas separate areas; "all" means every area. A colon and a digit after an area set its level; the
// default is 2. "time" puts the time of day before each entry. "file=" must come last: the rest of the text is
// the path of the file. Without "file=" the trace goes to standard error.
#pragma once

#include <array>
#include <string>

namespace dovrel {

/// The subject of a trace entry.
enum class TraceArea {
    kConnection,  ///< finding, launching and waking the server, and forgetting it
    kExchange,    ///< requests and replies
    kSession,     ///< operations that failed: what the error log says about them
    kCalls        ///< calls of the exported functions
};
constexpr size_t kTraceAreaCount = 4;

/// How much is traced. Each level includes the levels above it in this list.
enum class TraceLevel {
    kOff,       ///< nothing
    kFailures,  ///< failures
    kSteps,     ///< also every step, with sizes and times, but without any content from hosts or server
    kContents   ///< also the content that hosts and server send, in readable form
};

struct TraceSetting {
    TraceSetting() = default;

    /// Parses the text. An item that is not an area, "time" or a file is added to `problems` and otherwise
    /// ignored.
    explicit TraceSetting(const std::string& text);

    std::array<TraceLevel, kTraceAreaCount> levels{};
    bool timeOfDay = false;
    std::string file;      ///< "" for standard error
    std::string problems;  ///< the items that were not understood, separated by blanks; may be ""
};

const char* areaName(TraceArea area);

}  // namespace dovrel
