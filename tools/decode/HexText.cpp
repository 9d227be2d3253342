#include "tools/decode/HexText.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/text/TextConversions.h"
#include "settings/LineGrammar.h"

namespace dovrel::tools {

namespace {

constexpr size_t kShortestOffset = 4;  // digits
constexpr std::string_view kTwoBlanks = "  ";
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";
constexpr std::string_view kBetweenBytes = " \t,";

std::string_view withoutCarriageReturn(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find(kLineFeed), text.size());
        lines.push_back(trimmed(withoutCarriageReturn(text.substr(0, end))));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// The line of a dump: its offset, and the text with the bytes.
struct DumpLine {
    int64_t offset;
    std::string_view digits;
};

std::optional<DumpLine> splitDumpLine(std::string_view line) {
    const size_t end = std::min(line.find_first_not_of(kHexDigits), line.size());
    if (end < kShortestOffset) return std::nullopt;
    const int64_t offset = textToNumber(std::string(line.substr(0, end)), 16);
    std::string_view rest = line.substr(end);
    if (!rest.empty() && rest.front() == ':') {
        rest = trimmed(rest.substr(1));
        return DumpLine{offset, rest.substr(0, rest.find(kTwoBlanks))};
    }
    if (!rest.empty() && rest.substr(0, kTwoBlanks.size()) != kTwoBlanks) return std::nullopt;
    return DumpLine{offset, rest.substr(0, rest.find('|'))};
}

// Appends the bytes of the digits. Returns "", or the reason why the text is not hexadecimal.
std::string appendBytes(std::string_view digits, std::string& bytes) {
    for (size_t begin = digits.find_first_not_of(kBetweenBytes); begin != std::string_view::npos;
         begin = digits.find_first_not_of(kBetweenBytes)) {
        const size_t end = std::min(digits.find_first_of(kBetweenBytes, begin), digits.size());
        std::string_view word = digits.substr(begin, end - begin);
        digits.remove_prefix(end);
        if (word.substr(0, 2) == "0x" || word.substr(0, 2) == "0X") word.remove_prefix(2);
        if (word.find_first_not_of(kHexDigits) != std::string_view::npos || word.empty())
            return "\"" + std::string(word.substr(0, 40)) + "\" is not hexadecimal";
        if (word.size() % 2 != 0)
            return "\"" + std::string(word.substr(0, 40)) + "\" has an odd number of digits";
        bytes += decodeHexText(word);
    }
    return "";
}

std::string inLine(size_t index, const std::string& problem) {
    return "line " + std::to_string(index + 1) + ": " + problem;
}

// Returns whether the first line that is not blank is a line of a dump: it has the offset 0 and more than
// digits. A line of digits alone is bytes.
bool isDump(const std::vector<std::string_view>& lines) {
    const auto first =
        std::find_if(lines.begin(), lines.end(), [](std::string_view line) { return !line.empty(); });
    if (first == lines.end() || first->find_first_not_of(kHexDigits) == std::string_view::npos) return false;
    const std::optional<DumpLine> line = splitDumpLine(*first);
    return line && line->offset == 0;
}

HexText parseDump(const std::vector<std::string_view>& lines) {
    HexText result;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].empty()) continue;
        if (lines[i] == "*") return {"", inLine(i, "the dump omits repeated lines (\"*\")")};
        const std::optional<DumpLine> line = splitDumpLine(lines[i]);
        if (!line) return {"", inLine(i, "the line does not begin with an offset")};
        if (line->offset != static_cast<int64_t>(result.bytes.size())) {
            return {"", inLine(i, "the offset does not fit; the lines before have " +
                                      std::to_string(result.bytes.size()) + " bytes")};
        }
        const std::string problem = appendBytes(line->digits, result.bytes);
        if (!problem.empty()) return {"", inLine(i, problem)};
    }
    return result;
}

}  // namespace

HexText parseHexText(std::string_view text) {
    const std::vector<std::string_view> lines = splitLines(text);
    if (isDump(lines)) return parseDump(lines);
    HexText result;
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string problem = appendBytes(lines[i], result.bytes);
        if (!problem.empty()) return {"", inLine(i, problem)};
    }
    return result;
}

bool isPlainText(std::string_view text) {
    const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
    const auto isBlank = [&](char c) { return isBlankOrTab(c) || isLineEnd(c); };
    const auto isPlain = [&](char c) { return isBlank(c) || (c > ' ' && c <= '~'); };
    return std::all_of(text.begin(), text.end(), isPlain) && !std::all_of(text.begin(), text.end(), isBlank);
}

}  // namespace dovrel::tools
