#include "platform/text/ReadableText.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

#include "platform/text/CFStrings.h"

namespace dovrel {

namespace {

constexpr char kReplacementCharacter[] = "\xEF\xBF\xBD";

/// The longest characters of the Mac encodings have two bytes.
constexpr size_t kLongestMacCharacter = 2;

/// Enough UTF-8 bytes for one Mac character; the longest become about five UTF-16 units.
constexpr CFIndex kDecodedCapacity = 64;

bool isBetween(uint8_t byte, uint8_t first, uint8_t last) {
    return byte >= first && byte <= last;
}

/// The UTF-8 sequences that begin with a given byte. The range of the second byte excludes overlong forms,
/// surrogates and everything above U+10FFFF.
struct SequenceForm {
    size_t length;  ///< 0: no sequence begins with this byte
    uint8_t secondFirst;
    uint8_t secondLast;
};

SequenceForm sequenceForm(uint8_t first) {
    if (first < 0x80) return {1, 0, 0};
    if (isBetween(first, 0xC2, 0xDF)) return {2, 0x80, 0xBF};
    if (first == 0xE0) return {3, 0xA0, 0xBF};
    if (first == 0xED) return {3, 0x80, 0x9F};
    if (isBetween(first, 0xE1, 0xEF)) return {3, 0x80, 0xBF};
    if (first == 0xF0) return {4, 0x90, 0xBF};
    if (isBetween(first, 0xF1, 0xF3)) return {4, 0x80, 0xBF};
    if (first == 0xF4) return {4, 0x80, 0x8F};
    return {0, 0, 0};
}

/// Returns the length of the well-formed UTF-8 sequence at `at`, or 0 if there is none.
size_t sequenceLength(const std::string& bytes, size_t at) {
    const SequenceForm form = sequenceForm(static_cast<uint8_t>(bytes[at]));
    if (form.length > bytes.size() - at) return 0;
    for (size_t i = 1; i < form.length; ++i) {
        const bool isSecond = i == 1;
        const uint8_t first = isSecond ? form.secondFirst : 0x80;
        const uint8_t last = isSecond ? form.secondLast : 0xBF;
        if (!isBetween(static_cast<uint8_t>(bytes[at + i]), first, last)) return 0;
    }
    return form.length;
}

/// Decodes `character` with `encoding` and appends the result. Returns false and appends nothing if it is not
/// a character of the encoding.
bool appendDecoded(const std::string& character, CFStringEncoding encoding, std::string& text) {
    const CFObject<CFStringRef> decoded = newCFString(character.c_str(), encoding);
    char utf8[kDecodedCapacity] = {};
    if (!decoded || CFStringGetLength(decoded.get()) == 0 ||
        !CFStringGetCString(decoded.get(), utf8, sizeof utf8, kCFStringEncodingUTF8))
        return false;
    text += utf8;
    return true;
}

/// Appends the Mac character at `at`, or the replacement character. Returns the number
/// of bytes that it consumed.
size_t appendMacCharacter(const std::string& bytes, size_t at, CFStringEncoding encoding, std::string& text) {
    for (size_t length = 1; length <= kLongestMacCharacter && length <= bytes.size() - at; ++length)
        if (appendDecoded(bytes.substr(at, length), encoding, text)) return length;
    text += kReplacementCharacter;
    return 1;
}

}  // namespace

std::string readableText(const std::string& bytes) {
    const CFStringEncoding encoding = CFStringGetMostCompatibleMacStringEncoding(CFStringGetSystemEncoding());
    std::string text;
    text.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const size_t length = sequenceLength(bytes, at);
        text.append(bytes.data() + at, length);
        at += length != 0 ? length : appendMacCharacter(bytes, at, encoding, text);
    }
    return text;
}

}  // namespace dovrel
