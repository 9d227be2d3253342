#include "platform/profiler/ProfilerReport.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
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

int32_t percentOf(uint32_t time, uint32_t grandTotal) {
    if (grandTotal == 0) return 0;
    return static_cast<int32_t>(int64_t{asSigned(time)} * 100 / asSigned(grandTotal));
}

}  // namespace

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
        const std::string percent = std::to_string(percentOf(times.self, grandTotal));
        print(stream, numberText(times.self) + '(' + percent + "%): " + name + '\n');
    }
    print(stream, "\n=== Methods sorted by total time usage:\n");
    for (const auto& [name, times] : sortedBy(&MethodTimes::total, methods)) {
        print(stream, numberText(times.total) + ": " + name + '\n');
    }
    print(stream, "======== End of profiler report ========\n");
}

}  // namespace dovrel
