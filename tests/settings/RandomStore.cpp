#include "tests/settings/RandomStore.h"

#include <limits>

#include "settings/LineGrammar.h"

namespace dovrel::test {

namespace {
constexpr uint32_t kMostEntries = 20;
constexpr uint32_t kMostBytes = 70;
}  // namespace

Properties RandomStore::store() {
    Properties result;
    for (uint32_t i = below(kMostEntries + 1); i != 0; --i) {
        const std::string key = lineText();
        switch (below(3)) {
            case 0:
                result.addInt(key, integer());
                break;
            case 1:
                result.addString(key, lineText());
                break;
            default: {
                const std::string value = bytes();
                result.addBinary(key, value.data(), static_cast<uint32_t>(value.size()));
            }
        }
    }
    return result;
}

std::string RandomStore::lineText() {
    std::string text = bytes();
    for (char& c : text) {
        if (c == kLineFeed) c = '/';
    }
    return std::string(trimmed(text));
}

std::string RandomStore::bytes() {
    std::string result(below(kMostBytes + 1), '\0');
    for (char& c : result)
        c = static_cast<char>(below(256));
    return result;
}

int32_t RandomStore::integer() {
    switch (below(4)) {
        case 0:
            return std::numeric_limits<int32_t>::min();
        case 1:
            return std::numeric_limits<int32_t>::max();
        default:
            return static_cast<int32_t>(random_());
    }
}

}  // namespace dovrel::test
