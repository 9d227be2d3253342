// Profiler: records the calls of instrumented methods as a tree and reports how much time they took.
//
// A method is instrumented by one ProfilerScope. Only one operation runs at a time; the others spin until it
// ends. No operation may be called from inside another operation. All threads share one current call, so
// profile only one thread at a time.
#pragma once

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <memory>

#include "platform/profiler/ProfilerNode.h"

namespace dovrel {

/// Returns the processor time of the process in `clock()` units, modulo 2^32.
uint32_t processorClock();

class Profiler {
  public:
    using ClockSource = uint32_t (*)();

    explicit Profiler(ClockSource clock = processorClock);
    Profiler(const Profiler&) = delete;
    Profiler& operator=(const Profiler&) = delete;

    /// Records that a call begins. `name` is not copied and must stay valid until the next reset.
    void enter(const char* name);

    /// Records that the current call ends. Its caller becomes the current call. If no call is open, only the
    /// end time of the root changes.
    void leave();

    /// As leave(). With `printOnExit`, it then also renders the call tree, discards the
    /// text, and resets the profiler.
    void leaveAndDump(bool printOnExit);

    /// Deletes all recorded calls, including open calls.
    void reset();

    /// Prints the report and keeps the recorded calls. The stream's format flags, width, fill and locale are
    /// neither used nor changed.
    void report(std::ostream& stream);

  private:
    class Busy;

    void leaveCurrent();
    void startAgain();

    const ClockSource clock_;
    std::unique_ptr<ProfilerNode> root_;
    ProfilerNode* current_;
    std::atomic<bool> busy_{false};
};

/// Sets the profiler that ProfilerScope objects report to. Null means no profiler. The caller keeps ownership
/// and must call installProfiler(nullptr) before it deletes the profiler.
void installProfiler(Profiler* profiler);
Profiler* installedProfiler();

}  // namespace dovrel
