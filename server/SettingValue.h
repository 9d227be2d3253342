// Converts the text of a setting to the setting's type. If the text does not fit, each function leaves its
// target unchanged and throws UnfitValue (by value).
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace merrowd {

struct UnfitValue {
    std::string expected;  ///< what is expected, in words that follow "expected"
};

/// Returns the value of a text that is a decimal number and nothing else, except an optional "-" before it.
int64_t wholeNumber(const std::string& value, int64_t least, int64_t most);

void setFlag(bool& target, const std::string& value);
void setNumber(uint32_t& target, const std::string& value);
void setStatus(int16_t& target, const std::string& value);
void setDelay(std::chrono::milliseconds& target, const std::string& value);

/// Sets a text, with every "chg-lf" replaced by a line feed.
void setText(std::string& target, const std::string& value);

template <typename Value>
struct Choice {
    const char* name;
    Value value;
};

template <typename Value, size_t count>
void setChoice(Value& target, const Choice<Value> (&choices)[count], const std::string& value) {
    std::string names;
    for (const Choice<Value>& choice : choices) {
        if (value == choice.name) {
            target = choice.value;
            return;
        }
        names += (names.empty() ? "" : ", ") + std::string(choice.name);
    }
    throw UnfitValue{"one of " + names};
}

/// Returns the names in a list that is separated by commas, without the blanks around them.
std::vector<std::string> splitAtCommas(const std::string& text);

/// Returns a text in double quotes for a line in the log. Control characters become "\x0A" and so on, and
/// long texts are truncated.
std::string inQuotes(std::string_view text);

/// Returns the line for the log about a value that does not fit.
std::string describeProblem(const std::string& key, const std::string& value, const UnfitValue& unfit);

}  // namespace merrowd
