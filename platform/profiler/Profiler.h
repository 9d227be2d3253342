// Profiler: keeps the calls of instrumented methods as a tree and prints where the time went.
//
// A method is instrumented by one ProfilerScope. Every operation waits, without sleeping, until no other one
// runs; none may be called from inside another. All threads share one current call, so only one thread should
// be profiled at a time.
#pragma once

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <memory>

#include "platform/profiler/ProfilerNode.h"

namespace dovrel {

/// The processor time of the process in the units of the standard library's clock, modulo 2^32.
uint32_t processorClock();

class Profiler {
  public:
    using ClockSource = uint32_t (*)();

    explicit Profiler(ClockSource clock = processorClock);
    Profiler(const Profiler&) = delete;
    Profiler& operator=(const Profiler&) = delete;

    /// A call begins. `name` must stay valid until the next reset.
    void enter(const char* name);

    /// The current call ends and its caller is current again. At the root only the root's end changes.
    void leave();

    /// The same; with `printOnExit` the profile is then rendered, dropped and reset.
    void leaveAndDump(bool printOnExit);

    /// Forgets all calls, also open ones.
    void reset();

    /// Prints the report; the calls stay. The format flags, width, fill and locale of the stream are neither
    /// used nor changed.
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

/// The profiler that scopes report to, null if there is none. It stays the caller's, who takes it out before
/// deleting it.
void installProfiler(Profiler* profiler);
Profiler* installedProfiler();

}  // namespace dovrel
