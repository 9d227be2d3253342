#include "platform/trace/TraceSetting.h"

#include <algorithm>

namespace dovrel {

namespace {

constexpr char kFile[] = "file=";
constexpr char kAllAreas[] = "all";
constexpr char kTimeOfDay[] = "time";
constexpr TraceLevel kLevelWithoutDigit = TraceLevel::kSteps;
constexpr std::array<const char*, kTraceAreaCount> kAreaNames = {"connection", "exchange", "session",
                                                                 "calls"};

/// Applies an item, which is "area" or "area:level". Returns false and changes nothing if it is neither.
bool applyArea(const std::string& item, std::array<TraceLevel, kTraceAreaCount>& levels) {
    const size_t colon = item.find(':');
    const std::string name = item.substr(0, colon);
    TraceLevel level = kLevelWithoutDigit;
    if (colon != std::string::npos) {
        const std::string digit = item.substr(colon + 1);
        if (digit.size() != 1 || digit[0] < '0' || digit[0] > '3') return false;
        level = static_cast<TraceLevel>(digit[0] - '0');
    }
    bool known = false;
    for (size_t area = 0; area < kTraceAreaCount; ++area) {
        if (name != kAllAreas && name != kAreaNames[area]) continue;
        levels[area] = level;
        known = true;
    }
    return known;
}

}  // namespace

TraceSetting::TraceSetting(const std::string& text) {
    for (size_t begin = 0; begin < text.size();) {
        if (text.compare(begin, sizeof kFile - 1, kFile) == 0) {
            file = text.substr(begin + sizeof kFile - 1);
            return;
        }
        const size_t end = std::min(text.find(',', begin), text.size());
        const std::string item = text.substr(begin, end - begin);
        if (item == kTimeOfDay)
            timeOfDay = true;
        else if (!applyArea(item, levels))
            problems += (problems.empty() ? "" : " ") + item;
        begin = end + 1;
    }
}

const char* areaName(TraceArea area) {
    return kAreaNames[static_cast<size_t>(area)];
}

}  // namespace dovrel
