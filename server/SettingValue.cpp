#include "server/SettingValue.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "platform/text/TextConversions.h"
#include "settings/LineGrammar.h"

namespace merrowd {

namespace {

constexpr int64_t kMostInEntry = std::numeric_limits<int32_t>::max();

constexpr size_t kMostShown = 80;

bool isControlCharacter(char c) {
    return (c >= 0 && c < ' ') || c == 0x7F;
}

}  // namespace

int64_t wholeNumber(const std::string& value, int64_t least, int64_t most) {
    const UnfitValue unfit{"a number from " + std::to_string(least) + " to " + std::to_string(most)};
    const size_t sign = !value.empty() && value[0] == '-' ? 1 : 0;
    const std::string digits = value.substr(sign);
    const bool allDigits =
        std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    // Ten digits always fit into int64_t.
    if (digits.empty() || digits.size() > 10 || !allDigits) throw unfit;
    const int64_t number = std::strtoll(value.c_str(), nullptr, 10);
    if (number < least || number > most) throw unfit;
    return number;
}

void setFlag(bool& target, const std::string& value) {
    target = wholeNumber(value, 0, 1) == 1;
}

void setNumber(uint32_t& target, const std::string& value) {
    target = static_cast<uint32_t>(wholeNumber(value, 0, kMostInEntry));
}

void setStatus(int16_t& target, const std::string& value) {
    target = static_cast<int16_t>(
        wholeNumber(value, std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()));
}

void setDelay(std::chrono::milliseconds& target, const std::string& value) {
    target = std::chrono::milliseconds(wholeNumber(value, 0, kMostInEntry));
}

void setText(std::string& target, const std::string& value) {
    target = dovrel::restoreLineFeeds(value);
}

std::vector<std::string> splitAtCommas(const std::string& text) {
    std::vector<std::string> names;
    for (size_t from = 0; from <= text.size();) {
        const size_t comma = std::min(text.find(',', from), text.size());
        names.emplace_back(dovrel::trimmed(std::string_view(text).substr(from, comma - from)));
        from = comma + 1;
    }
    return names;
}

std::string inQuotes(std::string_view text) {
    std::string result = "\"";
    for (const char c : text.substr(0, kMostShown)) {
        if (isControlCharacter(c)) {
            result += "\\x" + dovrel::bytesToHexText(&c, 1);
        } else {
            result += c;
        }
    }
    return result + (text.size() > kMostShown ? "...\"" : "\"");
}

std::string describeProblem(const std::string& key, const std::string& value, const UnfitValue& unfit) {
    return "the value " + inQuotes(value) + " of " + inQuotes(key) + " does not fit; expected " +
           unfit.expected;
}

}  // namespace merrowd
