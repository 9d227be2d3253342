#include "tools/calls/HexDump.h"

#include <cstdio>

#include "platform/text/ReadableText.h"

namespace dovrel::tools {

namespace {

constexpr size_t kBytesInLine = 16;

bool isVisible(unsigned char byte) {
    return byte >= ' ' && byte <= '~';
}

void appendFormatted(std::string& output, const char* format, unsigned number) {
    char text[16];
    std::snprintf(text, sizeof text, format, number);
    output += text;
}

}  // namespace

bool isPrintable(std::string_view bytes) {
    unsigned char previous = 0;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isC0Control = byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r';
        // U+0080 to U+009F, which some terminals obey.
        const bool isC1Control = previous == 0xC2 && byte < 0xA0;
        if (isC0Control || isC1Control || byte == 0x7F) return false;
        previous = byte;
    }
    // Well-formed UTF-8 is not changed.
    return readableText(std::string(bytes)) == bytes;
}

std::string hexDump(std::string_view bytes) {
    std::string dump;
    for (size_t begin = 0; begin < bytes.size(); begin += kBytesInLine) {
        const std::string_view line = bytes.substr(begin, kBytesInLine);
        std::string characters;
        appendFormatted(dump, "%08X ", static_cast<unsigned>(begin));
        for (size_t column = 0; column < kBytesInLine; ++column) {
            if (column < line.size()) {
                const auto byte = static_cast<unsigned char>(line[column]);
                appendFormatted(dump, " %02X", byte);
                characters += isVisible(byte) ? line[column] : '.';
            } else {
                dump += "   ";
            }
        }
        dump += "  |" + characters + "|\n";
    }
    return dump;
}

}  // namespace dovrel::tools
