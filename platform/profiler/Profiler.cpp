#include "platform/profiler/Profiler.h"

#include <ctime>
#include <ostream>
#include <streambuf>

#include "platform/profiler/ProfilerReport.h"

namespace dovrel {

namespace {

std::atomic<Profiler*> processProfiler{nullptr};

std::unique_ptr<ProfilerNode> newRoot() {
    return std::make_unique<ProfilerNode>(nullptr, nullptr);
}

// A stream buffer that discards the text as it arrives. The tree of a deep recursion can be gigabytes of
// text, so it is not collected.
class DroppedText : public std::streambuf {
  protected:
    int_type overflow(int_type character) override { return traits_type::not_eof(character); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

}  // namespace

// Sets the busy flag, and clears it at the end of the scope, also when an exception leaves the scope.
class Profiler::Busy {
  public:
    explicit Busy(Profiler& profiler) : flag_(profiler.busy_) {
        while (flag_.exchange(true, std::memory_order_acquire)) {
        }
    }
    ~Busy() { flag_.store(false, std::memory_order_release); }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    std::atomic<bool>& flag_;
};

uint32_t processorClock() {
    return static_cast<uint32_t>(std::clock());
}

Profiler::Profiler(ClockSource clock) : clock_(clock), root_(newRoot()), current_(root_.get()) {}

void Profiler::enter(const char* name) {
    const Busy busy(*this);
    const uint32_t arrival = clock_();
    ProfilerNode& call = current_->addChild(name);
    call.setStart(arrival);
    current_ = &call;
    // Reads the clock again, so that the profiler's own work is not counted as the method's.
    call.setStart(clock_());
}

void Profiler::leave() {
    const Busy busy(*this);
    leaveCurrent();
}

void Profiler::leaveAndDump(bool printOnExit) {
    const Busy busy(*this);
    leaveCurrent();
    if (!printOnExit) return;
    DroppedText text;
    std::ostream tree(&text);
    printCallTree(*root_, tree);
    startAgain();
}

void Profiler::reset() {
    const Busy busy(*this);
    startAgain();
}

void Profiler::report(std::ostream& stream) {
    const Busy busy(*this);
    printProfilerReport(*root_, stream);
}

void Profiler::leaveCurrent() {
    current_->setEnd(clock_());
    if (current_->getParent() != nullptr) current_ = current_->getParent();
}

void Profiler::startAgain() {
    root_ = newRoot();
    current_ = root_.get();
}

void installProfiler(Profiler* profiler) {
    processProfiler = profiler;
}

Profiler* installedProfiler() {
    return processProfiler;
}

}  // namespace dovrel
