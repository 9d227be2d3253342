#include "platform/trace/TraceText.h"

#include <algorithm>

#include "platform/text/ReadableText.h"
#include "platform/text/TextConversions.h"

namespace dovrel {

namespace {

constexpr char kFurtherEntryLine[] = "\n    ";
constexpr char kFurtherValueLine[] = "\n| ";
constexpr char kEscapedLineEnd[] = "\\n";

bool isControlCharacter(char character) {
    constexpr char kDelete = '\x7F';
    const auto code = static_cast<unsigned char>(character);
    return (code < ' ' && character != '\t') || character == kDelete;
}

bool isPrintable(char character) {
    return character >= ' ' && character <= '~';
}

std::string readableWithLineEnds(const std::string& bytes, const char* lineEnd) {
    const std::string readable = readableText(bytes);
    std::string text;
    text.reserve(readable.size());
    for (size_t at = 0; at < readable.size(); ++at) {
        const char character = readable[at];
        const bool isFirstOfTwo = character == '\r' && at + 1 < readable.size() && readable[at + 1] == '\n';
        if (isFirstOfTwo) continue;
        if (character == '\r' || character == '\n')
            text += lineEnd;
        else if (isControlCharacter(character))
            text += "\\x" + numberToText(static_cast<unsigned char>(character), 16, 2);
        else
            text += character;
    }
    return text;
}

}  // namespace

std::string traceEntryText(const std::string& text) {
    return readableWithLineEnds(text, kFurtherEntryLine);
}

std::string traceValueText(const std::string& value) {
    return readableWithLineEnds(value, kFurtherValueLine);
}

std::string traceOneLineText(const std::string& value) {
    return readableWithLineEnds(value, kEscapedLineEnd);
}

std::string traceDataText(const void* bytes, uint32_t count, uint32_t mostBytes) {
    const uint32_t shown = std::min(count, mostBytes);
    std::string text = byteCountText(count);
    if (shown == 0) return text;
    std::string beginning(static_cast<const char*>(bytes), shown);
    text += ':';
    for (const char byte : beginning)
        text += ' ' + numberToText(static_cast<unsigned char>(byte), 16, 2);
    if (shown < count) text += " ...";
    if (std::none_of(beginning.begin(), beginning.end(), isPrintable)) return text;
    std::replace_if(
        beginning.begin(), beginning.end(), [](char character) { return !isPrintable(character); }, '.');
    return text + " \"" + beginning + '"';
}

std::string byteCountText(uint64_t count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

}  // namespace dovrel
