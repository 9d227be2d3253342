// Trace: writes lines about what the library does, for people who look for the cause of a failure. An entry
// names the process, the microseconds since the trace began, and the area:
//
//     dovrel 4711 12345 us exchange: call method, 111 bytes: answered, 76 bytes, 123 us
//
// On request each entry begins with the local time of day, in the form of the development server's log.
// The trace is UTF-8 with line feeds. TraceText.h says how other characters and texts of several lines are
// written. The most recently constructed object is the trace of the process. If there is no object,
// tracing costs one pointer comparison, and the text of an entry is not made. Failures of the trace never
// affect the code that is traced.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"
#include "platform/trace/TraceSetting.h"

namespace dovrel {

/// A stopwatch for the entries of a trace. It starts when it is constructed.
class TraceTimer {
  public:
    /// Returns the time since the start, such as "123 us".
    std::string text() const {
        const std::chrono::duration<double, std::micro> passed = std::chrono::steady_clock::now() - begin_;
        return std::to_string(static_cast<long long>(passed.count())) + " us";
    }

  private:
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

class Trace {
  public:
    /// Starts the trace of the process, which ends when this object is destroyed. `setting` is the text that
    /// TraceSetting.h describes. Errors in it become the first entry of the trace. The file is created with
    /// read and write permission for its owner only; an existing file is appended to. Symbolic links are not
    /// followed. If the file cannot be opened or is not a regular file, the trace goes to standard error. No
    /// other thread may trace while this object is constructed or destroyed. Throws std::bad_alloc.
    explicit Trace(const std::string& setting);
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;
    ~Trace();

    static bool wants(TraceArea area, TraceLevel level) noexcept {
        return running != nullptr && running->setting_.levels[static_cast<size_t>(area)] >= level;
    }

    /// Calls `makeText()` and writes its text as an entry, if the setting includes this area and level. An
    /// empty text is not written. Pass values from hosts and servers through traceValueText() first. Any
    /// thread; entries of several threads do not mix.
    template <typename MakeText>
    static void write(TraceArea area, TraceLevel level, const MakeText& makeText) noexcept {
        if (!wants(area, level)) return;
        try {
            const std::string text = makeText();
            if (!text.empty()) running->writeEntry(std::string(areaName(area)) + ": " + text);
        } catch (CPPException* caught) {
            const std::unique_ptr<CPPException> failure(caught);  // the entry is lost, as below
        } catch (...) {
            // Out of memory: the entry is lost.
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
