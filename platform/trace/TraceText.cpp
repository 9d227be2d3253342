#include "platform/trace/TraceText.h"

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

}  // namespace dovrel
