#include "platform/profiler/Profiler.h"

#include <algorithm>
#include <ctime>
#include <map>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

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

struct MethodTimes {
    uint32_t total = 0;
    uint32_t self = 0;
};

using Methods = std::map<std::string, MethodTimes>;
using Method = std::pair<std::string, MethodTimes>;

int32_t asSigned(uint32_t time) {
    return static_cast<int32_t>(time);
}

std::string numberText(uint32_t time) {
    return std::to_string(asSigned(time));
}

// Uses unformatted output. The stream belongs to the caller, so its width, fill, base and locale must not
// affect the report and must not change.
void print(std::ostream& stream, std::string_view text) {
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

Methods methodsBelow(const ProfilerNode& root) {
    Methods methods;
    root.forEachBelow([&methods](const ProfilerNode& call, size_t) {
        MethodTimes& times = methods[call.getName()];
        times.total += call.total();
        times.self += call.self();
    });
    return methods;
}

// Sorts the largest time first. Methods with equal times stay sorted by name.
std::vector<Method> sortedBy(uint32_t MethodTimes::*time, const Methods& methods) {
    std::vector<Method> sorted(methods.begin(), methods.end());
    std::stable_sort(sorted.begin(), sorted.end(), [time](const auto& a, const auto& b) {
        return asSigned(a.second.*time) > asSigned(b.second.*time);
    });
    return sorted;
}

int32_t percentage(uint32_t time, uint32_t grandTotal) {
    if (grandTotal == 0) return 0;
    return static_cast<int32_t>(int64_t{asSigned(time)} * 100 / asSigned(grandTotal));
}

}  // namespace

// Deletes the leaves first and returns from each leaf to its caller. This needs neither recursion nor memory.
ProfilerNode::~ProfilerNode() {
    ProfilerNode* node = this;
    while (node != this || !children_.empty()) {
        if (!node->children_.empty()) {
            node = node->children_.back().get();
            continue;
        }
        node = node->parent_;
        node->children_.pop_back();
    }
}

ProfilerNode& ProfilerNode::addChild(const char* name) {
    children_.push_back(std::make_unique<ProfilerNode>(name, this));
    return *children_.back();
}

uint32_t ProfilerNode::childrenTotal() const {
    uint32_t sum = 0;
    for (const auto& child : children_)
        sum += child->total();
    return sum;
}

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
    discardCalls();
}

void Profiler::reset() {
    const Busy busy(*this);
    discardCalls();
}

void Profiler::report(std::ostream& stream) {
    const Busy busy(*this);
    printProfilerReport(*root_, stream);
}

void Profiler::leaveCurrent() {
    current_->setEnd(clock_());
    if (current_->getParent() != nullptr) current_ = current_->getParent();
}

void Profiler::discardCalls() {
    root_ = newRoot();
    current_ = root_.get();
}

void installProfiler(Profiler* profiler) {
    processProfiler = profiler;
}

Profiler* installedProfiler() {
    return processProfiler;
}

ProfilerScope::ProfilerScope(const char* methodName, bool printOnExit)
    : methodName_(methodName), printOnExit_(printOnExit) {
    if (Profiler* const profiler = installedProfiler()) profiler->enter(methodName_);
}

ProfilerScope::~ProfilerScope() {
    Profiler* const profiler = installedProfiler();
    if (profiler == nullptr) return;
    try {
        profiler->leaveAndDump(printOnExit_);
    } catch (...) {
        // Out of memory: the recorded calls are kept. The instrumented method must not fail because of this.
    }
}

void printCallTree(const ProfilerNode& root, std::ostream& stream) {
    std::string blanks;
    root.forEachBelow([&](const ProfilerNode& call, size_t depth) {
        if (blanks.size() < depth) blanks.resize(depth, ' ');
        print(stream, std::string_view(blanks).substr(0, depth));
        print(stream,
              call.getName() + (' ' + numberText(call.total())) + ' ' + numberText(call.self()) + '\n');
    });
}

void printProfilerReport(const ProfilerNode& root, std::ostream& stream) {
    const Methods methods = methodsBelow(root);
    const uint32_t grandTotal = root.childrenTotal();

    print(stream, "======== Profiler report ========\n=== Call tree:\n");
    printCallTree(root, stream);
    print(stream, "\n=== Methods sorted by self time usage:\n");
    for (const auto& [name, times] : sortedBy(&MethodTimes::self, methods)) {
        const std::string percent = std::to_string(percentage(times.self, grandTotal));
        print(stream, numberText(times.self) + '(' + percent + "%): " + name + '\n');
    }
    print(stream, "\n=== Methods sorted by total time usage:\n");
    for (const auto& [name, times] : sortedBy(&MethodTimes::total, methods)) {
        print(stream, numberText(times.total) + ": " + name + '\n');
    }
    print(stream, "======== End of profiler report ========\n");
}

}  // namespace dovrel
