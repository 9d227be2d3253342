// Fuzz target for the reader of properties texts. A second, much simpler reader that works line by line must
// find the same entries. The entries are also saved and read again.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FuzzTarget.h"
#include "settings/Properties.h"

namespace {

using dovrel::Properties;

std::string trimmedLine(std::string line) {
    const size_t begin = line.find_first_not_of(" \t");
    if (begin == std::string::npos) return "";
    return line.substr(begin, line.find_last_not_of(" \t") - begin + 1);
}

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += c;
        }
    }
    for (std::string& line : lines)
        line = trimmedLine(line);
    return lines;
}

bool contains(const std::string& line, const char* word) {
    return line.find(word) != std::string::npos;
}

std::string decimalText(const std::string& digits) {
    const long long number = std::strtoll(digits.c_str(), nullptr, 10);
    return "INT:" + std::to_string(number > INT32_MAX ? INT32_MAX : number < INT32_MIN ? INT32_MIN : number);
}

std::string readHexDigits(const std::string& text) {
    std::string digits;
    for (const char c : text) {
        const bool isLower = c >= 'a' && c <= 'f';
        if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || isLower) {
            digits += isLower ? static_cast<char>(c - 'a' + 'A') : c;
        }
    }
    return digits.substr(0, digits.size() / 2 * 2);
}

// Returns every entry: its key and its value line in a saved text.
std::map<std::string, std::string> readEntries(const std::string& text) {
    const std::vector<std::string> lines = splitLines(text);
    std::map<std::string, std::string> entries;
    std::optional<std::string> key;
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (!line.empty() && line[0] == '/') {
            key = line.size() < 2 ? "" : line.substr(2);
            continue;
        }
        if (!key || !(contains(line, "INT:") || contains(line, "STR:") || contains(line, "BAR:"))) continue;
        const std::string word = line.substr(0, line.find(':'));
        std::string value = line.substr(line.find(':') + 1);
        if (word == "BAR") {
            while (i + 1 < lines.size() && (lines[i + 1].empty() || lines[i + 1][0] != '/'))
                value += lines[++i];
            entries.emplace(*key, "BAR:" + readHexDigits(value));
        } else if (word == "INT") {
            entries.emplace(*key, decimalText(value));
        } else if (word == "STR") {
            entries.emplace(*key, "STR:" + value);
        }
        key.reset();
    }
    return entries;
}

std::string saved(const Properties& store) {
    std::string text;
    store.save(text);
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    std::string expected;
    for (const auto& [key, valueLine] : readEntries(input)) {
        expected.append("//").append(key).append("\n").append(valueLine).append("\n");
    }

    std::string text = input;
    Properties throughCursor;
    throughCursor.load(text, true);
    FUZZ_CHECK(text == input);
    FUZZ_CHECK(saved(throughCursor) == expected);

    Properties usedUp;
    usedUp.load(text, false);
    FUZZ_CHECK(text.empty());
    FUZZ_CHECK(saved(usedUp) == expected);

    Properties again;
    again.load(expected, true);
    FUZZ_CHECK(saved(again) == expected);
    return 0;
}
