#include "portability/corefoundation/PackedVersion.h"

#include <optional>

namespace portability {
namespace {

constexpr std::size_t kLongestVersion = 10;
constexpr UInt32 kLargestBuild = 0xFF;

struct Stage {
    std::string_view name;
    UInt32 value;
};
// "fc" must come before its prefix "f".
constexpr Stage kStages[] = {{"d", 0x20}, {"a", 0x40}, {"b", 0x60}, {"fc", 0x80}, {"f", 0x80}};
constexpr UInt32 kReleased = 0x80;

bool take(std::string_view& text, std::string_view token) {
    if (text.substr(0, token.size()) != token) {
        return false;
    }
    text.remove_prefix(token.size());
    return true;
}

std::optional<UInt32> takeDigit(std::string_view& text) {
    if (text.empty() || text.front() < '0' || text.front() > '9') {
        return std::nullopt;
    }
    const auto digit = static_cast<UInt32>(text.front() - '0');
    text.remove_prefix(1);
    return digit;
}

// Reads one or two digits as binary-coded decimal.
std::optional<UInt32> takeMajor(std::string_view& text) {
    const auto first = takeDigit(text);
    const auto second = takeDigit(text);
    return second ? (*first << 4) | *second : first;
}

UInt32 takeBuild(std::string_view& text) {
    UInt32 build = 0;
    while (const auto digit = takeDigit(text)) {
        build = build * 10 + *digit;
    }
    return build;
}

}  // namespace

UInt32 packedVersion(std::string_view version) {
    std::string_view rest = version;
    const auto major = takeMajor(rest);
    if (!major || version.size() > kLongestVersion) {
        return 0;
    }
    UInt32 minorAndBug[2] = {0, 0};
    for (UInt32& part : minorAndBug) {
        if (!take(rest, ".")) {
            break;
        }
        const auto digit = takeDigit(rest);
        if (!digit) {
            return 0;
        }
        part = *digit;
    }
    UInt32 stage = kReleased;
    UInt32 build = 0;
    for (const Stage& candidate : kStages) {
        if (take(rest, candidate.name)) {
            stage = candidate.value;
            build = takeBuild(rest);
            break;
        }
    }
    if (!rest.empty() || build > kLargestBuild) {
        return 0;
    }
    return (*major << 24) | (minorAndBug[0] << 20) | (minorAndBug[1] << 16) | (stage << 8) | build;
}

}  // namespace portability
