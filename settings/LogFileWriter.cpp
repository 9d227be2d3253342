#include "settings/LogFileWriter.h"

#include <string_view>

#include "platform/text/TextConversions.h"
#include "settings/LineGrammar.h"

namespace dovrel {

void LogFileWriter::writeTitle(const std::string& title) {
    appendKeyLine(output_, title);
}

void LogFileWriter::writeInt(const std::string& key, int32_t value) {
    appendIntEntry(output_, key, value);
}

void LogFileWriter::writeString(const std::string& key, const std::string& value) {
    appendStringEntry(output_, key, escapeLineFeeds(value));
}

void LogFileWriter::writeBinary(const std::string& key, const void* bytes, uint32_t length) {
    constexpr size_t kDigitsPerLine = 2 * kBytesPerLine;
    const std::string digits = bytesToHexText(bytes, length);
    std::string_view rest = digits;

    appendKeyLine(output_, key);
    (output_ += kBinaryWord) += kTypeWordEnd;
    do {
        const std::string_view line = rest.substr(0, kDigitsPerLine);
        appendLine(output_, line);
        rest.remove_prefix(line.size());
    } while (!rest.empty());
}

void LogFileWriter::writeBinary(const std::string& key, const CPPByteArray& value) {
    writeBinary(key, value.data(), value.getSize());
}

}  // namespace dovrel
