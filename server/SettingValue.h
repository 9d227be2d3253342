// Values of settings, from their text to their type. Each function leaves its target alone and throws
// UnfitValue (by value) where the text does not fit.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace merrowd {

struct UnfitValue {
    std::string expected;  ///< in words, to stand behind "expected"
};

/// The number that all of the text is, decimal and with a "-" at most in front.
int64_t wholeNumber(const std::string& value, int64_t least, int64_t most);

void setFlag(bool& target, const std::string& value);
void setNumber(uint32_t& target, const std::string& value);
void setStatus(int16_t& target, const std::string& value);
void setDelay(std::chrono::milliseconds& target, const std::string& value);

/// Line feeds that the text form cannot hold come back ("chg-lf").
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

/// A text in double quotes for a problem: control characters as "\x0A", and the beginning only of long texts.
std::string inQuotes(std::string_view text);

/// The line for the log.
std::string problemOfValue(const std::string& key, const std::string& value, const UnfitValue& unfit);

}  // namespace merrowd
