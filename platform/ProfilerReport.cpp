#include "platform/ProfilerReport.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace dovrel {

namespace {

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

void printSubtree(const ProfilerNode& node, size_t depth, std::ostream& stream) {
    for (const auto& child : node.getChildren()) {
        stream << std::string(depth, ' ') << child->getName() << ' ' << numberText(child->total()) << ' '
               << numberText(child->self()) << '\n';
        printSubtree(*child, depth + 1, stream);
    }
}

void collect(const ProfilerNode& node, Methods& methods) {
    for (const auto& child : node.getChildren()) {
        MethodTimes& times = methods[child->getName()];
        times.total += child->total();
        times.self += child->self();
        collect(*child, methods);
    }
}

// Largest first; the names of the table stay in their order where times are equal.
std::vector<Method> sortedBy(uint32_t MethodTimes::*time, const Methods& methods) {
    std::vector<Method> sorted(methods.begin(), methods.end());
    std::stable_sort(sorted.begin(), sorted.end(), [time](const auto& a, const auto& b) {
        return asSigned(a.second.*time) > asSigned(b.second.*time);
    });
    return sorted;
}

int32_t percentOf(uint32_t time, uint32_t grandTotal) {
    if (grandTotal == 0) return 0;
    return static_cast<int32_t>(int64_t{asSigned(time)} * 100 / asSigned(grandTotal));
}

}  // namespace

void printCallTree(const ProfilerNode& root, std::ostream& stream) {
    printSubtree(root, 1, stream);
}

void printProfilerReport(const ProfilerNode& root, std::ostream& stream) {
    Methods methods;
    collect(root, methods);
    const uint32_t grandTotal = root.childrenTotal();

    stream << "======== Profiler report ========\n=== Call tree:\n";
    printCallTree(root, stream);
    stream << "\n=== Methods sorted by self time usage:\n";
    for (const auto& [name, times] : sortedBy(&MethodTimes::self, methods)) {
        stream << numberText(times.self) << '(' << std::to_string(percentOf(times.self, grandTotal))
               << "%): " << name << '\n';
    }
    stream << "\n=== Methods sorted by total time usage:\n";
    for (const auto& [name, times] : sortedBy(&MethodTimes::total, methods)) {
        stream << numberText(times.total) << ": " << name << '\n';
    }
    stream << "======== End of profiler report ========\n";
}

}  // namespace dovrel
