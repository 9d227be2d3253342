// Trace: lines about what the library does, for people who look for the reason of a failure. An entry names
// the process, the microseconds since the trace began, and the area:
//
//     dovrel 4711 12345 us exchange: call method, 111 bytes: answered, 76 bytes, 123 us
//
// The trace is UTF-8 with line feeds; TraceText.h says what becomes of other characters and of texts of
// several lines. The process's trace is the object that was made last. Without one, tracing costs one look at
// a pointer, and the text of an entry is not made. Failures of the trace never reach what is traced.
#pragma once

#include <string>

#include "platform/trace/TraceSetting.h"
#include "platform/trace/TraceTimer.h"

namespace dovrel {

class Trace {
  public:
    /// Starts the process's trace, which ends with this object. `setting` is the text of TraceSetting.h; what
    /// is wrong with it is the trace's first entry. The file is created, readable and writable for its owner
    /// only, or appended to. Links are not followed. If the file cannot be opened or is not a regular file,
    /// the trace goes to standard error. Neither the start nor the end may overlap with anything that traces.
    /// Throws std::bad_alloc.
    explicit Trace(const std::string& setting);
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;
    ~Trace();

    static bool wants(TraceArea area, TraceLevel level) noexcept {
        return running != nullptr && running->setting_.levels[static_cast<size_t>(area)] >= level;
    }

    /// Writes the entry that `makeText()` returns, if it is wanted. An empty text is not written. Values that
    /// hosts and servers give go through traceValueText() first. Any thread; entries do not mix.
    template <typename MakeText>
    static void write(TraceArea area, TraceLevel level, const MakeText& makeText) noexcept {
        if (!wants(area, level)) return;
        try {
            const std::string text = makeText();
            if (!text.empty()) running->writeEntry(std::string(areaName(area)) + ": " + text);
        } catch (...) {
            // Out of memory: an entry is missing.
        }
    }

  private:
    void writeEntry(const std::string& text) const;

    static const Trace* running;

    const TraceSetting setting_;
    const TraceTimer timer_;
    const int descriptor_;
};

}  // namespace dovrel
