// Profiler: records the calls of instrumented methods as a tree and reports how much time they took.
//
// A method is instrumented by one ProfilerScope:
//
//     void Trader::exchange() {
//         ProfilerScope scope("Trader::exchange", false);
//
// Without an installed profiler a scope does nothing, so the instrumentation may stay in the code.
//
// The tree is as deep as the profiled code nests its calls, and that code may run on a small stack. So no
// function here, and no code that walks a tree, recurses.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <utility>
#include <vector>

namespace dovrel {

/// One timed call in the tree.
class ProfilerNode {
  public:
    /// `name` is not copied; it is normally a string literal. `name` and `parent` are null for the root only.
    ProfilerNode(const char* name, ProfilerNode* parent) : name_(name), parent_(parent) {}
    ProfilerNode(const ProfilerNode&) = delete;
    ProfilerNode& operator=(const ProfilerNode&) = delete;

    /// Deletes all calls below this call.
    ~ProfilerNode();

    /// Adds a call made by this call, and returns it. This node owns the new node.
    ProfilerNode& addChild(const char* name);

    void setStart(uint32_t clock) { start_ = clock; }
    void setEnd(uint32_t clock) { end_ = clock; }

    const char* getName() const { return name_; }
    ProfilerNode* getParent() const { return parent_; }
    uint32_t getStart() const { return start_; }

    /// Returns 0 while the call is open.
    uint32_t getEnd() const { return end_; }

    /// The calls that this call made, in order of entry.
    const std::vector<std::unique_ptr<ProfilerNode>>& getChildren() const { return children_; }

    /// Calls `visit(node, depth)` for each call below this one, in order of entry. A call is visited before
    /// the calls that it made. The children of this node have depth 1. Throws std::bad_alloc if there is no
    /// memory for the list of open callers.
    template <class Visit>
    void forEachBelow(Visit visit) const;

    /// Returns the clock units from start to end, modulo 2^32.
    uint32_t total() const { return end_ - start_; }

    /// Returns the total minus the totals of the children, modulo 2^32.
    uint32_t self() const { return total() - childrenTotal(); }

    uint32_t childrenTotal() const;

  private:
    const char* name_;
    uint32_t start_ = 0;
    uint32_t end_ = 0;
    ProfilerNode* parent_;
    std::vector<std::unique_ptr<ProfilerNode>> children_;
};

template <class Visit>
void ProfilerNode::forEachBelow(Visit visit) const {
    // The path from this node to the next call. Each entry holds the number of children already visited.
    std::vector<std::pair<const ProfilerNode*, size_t>> callers = {{this, 0}};
    while (!callers.empty()) {
        auto& [caller, visited] = callers.back();
        if (visited == caller->children_.size()) {
            callers.pop_back();
            continue;
        }
        const ProfilerNode& call = *caller->children_[visited++];
        visit(call, callers.size());
        callers.emplace_back(&call, 0);
    }
}

/// Returns the processor time of the process in `clock()` units, modulo 2^32.
uint32_t processorClock();

/// Only one operation runs at a time; the others spin until it ends. No operation may be called from inside
/// another operation. All threads share one current call, so profile only one thread at a time.
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

    /// Prints the report (see printProfilerReport) and keeps the recorded calls.
    void report(std::ostream& stream);

  private:
    class Busy;

    void leaveCurrent();
    void discardCalls();

    const ClockSource clock_;
    std::unique_ptr<ProfilerNode> root_;
    ProfilerNode* current_;
    std::atomic<bool> busy_{false};
};

/// Sets the profiler that ProfilerScope objects report to. Null means no profiler. The caller keeps ownership
/// and must call installProfiler(nullptr) before it deletes the profiler.
void installProfiler(Profiler* profiler);
Profiler* installedProfiler();

/// Times the enclosing block as one call of the installed profiler.
class ProfilerScope {
  public:
    /// `methodName` is not copied. With `printOnExit`, the recorded calls are deleted at the end of this
    /// scope, unless there is not enough memory to render them.
    ProfilerScope(const char* methodName, bool printOnExit);
    ~ProfilerScope();
    ProfilerScope(const ProfilerScope&) = delete;
    ProfilerScope& operator=(const ProfilerScope&) = delete;

  private:
    const char* const methodName_;
    const bool printOnExit_;
};

/// Prints one line for each call below the root, a caller before the calls that it made: one blank per level,
/// then name, total time and self time. Every number is printed as a signed 32-bit integer. The stream's
/// format flags, width, fill and locale are neither used nor changed.
void printCallTree(const ProfilerNode& root, std::ostream& stream);

/// Prints the call tree, then the methods sorted by self time with their percentage of the whole time, then
/// the methods sorted by total time. A recursive method is counted at every level. Numbers and the stream are
/// treated as by printCallTree.
void printProfilerReport(const ProfilerNode& root, std::ostream& stream);

}  // namespace dovrel
