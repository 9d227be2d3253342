// Trace: lines about what the library does, for whoever looks for the reason of a failure. A line names the
// process, the time since the trace was begun, and the area:
//
//     dovrel 4711 12345 us exchange: call method, 111 bytes: answered, 76 bytes, 123 us
//
// The process's trace is the object that was made last; where there is none, tracing costs one look at a
// pointer, and the text of a line is not made. Nothing that goes wrong in tracing reaches what is traced.
#pragma once

#include <string>

#include "platform/TraceSetting.h"
#include "platform/TraceTimer.h"

namespace dovrel {

class Trace {
  public:
    /// Begins the process's trace, until it is destroyed, as the text says (TraceSetting.h); what was not
    /// understood is its first line. The file is made, for its owner only, or added to; a link is not
    /// followed. A file that cannot be opened, or is none, is replaced by standard error. Neither the making
    /// nor the end may overlap with anything that traces. std::bad_alloc when memory runs out.
    explicit Trace(const std::string& setting);
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;
    ~Trace();

    static bool wants(TraceArea area, TraceLevel level) noexcept {
        return running != nullptr && running->setting_.levels[static_cast<size_t>(area)] >= level;
    }

    /// Writes the line that `makeText()` returns, if it is wanted; an empty text is no line. Any thread;
    /// lines do not mix.
    template <typename MakeText>
    static void write(TraceArea area, TraceLevel level, const MakeText& makeText) noexcept {
        if (!wants(area, level)) return;
        try {
            const std::string text = makeText();
            if (!text.empty()) running->writeLine(std::string(nameOf(area)) + ": " + text);
        } catch (...) {
            // Memory has run out: a line is missing.
        }
    }

  private:
    void writeLine(const std::string& text) const;

    static const Trace* running;

    const TraceSetting setting_;
    const TraceTimer timer_;
    const int descriptor_;
};

}  // namespace dovrel
