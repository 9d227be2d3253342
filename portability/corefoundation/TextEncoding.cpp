#include "portability/corefoundation/TextEncoding.h"

#include <algorithm>
#include <array>

namespace portability {
namespace {

// The Mac Roman characters from 0x80 on, with the euro sign at 0xDB. The logo at 0xF0 is in Unicode's private
// use area.
constexpr std::array<UniChar, 128> kMacRomanUpperHalf = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7,
};

constexpr std::uint32_t kLastCodePoint = 0x10FFFF;

bool isSurrogate(std::uint32_t codePoint) {
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

void appendCodePoint(std::uint32_t codePoint, std::vector<UniChar>& units) {
    if (codePoint < 0x10000) {
        units.push_back(static_cast<UniChar>(codePoint));
        return;
    }
    units.push_back(static_cast<UniChar>(0xD800 + ((codePoint - 0x10000) >> 10)));
    units.push_back(static_cast<UniChar>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
}

void appendUTF8(std::uint32_t codePoint, std::string& bytes) {
    const auto append = [&bytes](std::uint32_t value) { bytes.push_back(static_cast<char>(value)); };
    if (codePoint < 0x80) {
        append(codePoint);
        return;
    }
    if (codePoint < 0x800) {
        append(0xC0 | (codePoint >> 6));
    } else if (codePoint < 0x10000) {
        append(0xE0 | (codePoint >> 12));
        append(0x80 | ((codePoint >> 6) & 0x3F));
    } else {
        append(0xF0 | (codePoint >> 18));
        append(0x80 | ((codePoint >> 12) & 0x3F));
        append(0x80 | ((codePoint >> 6) & 0x3F));
    }
    append(0x80 | (codePoint & 0x3F));
}

// The form of a UTF-8 sequence, which its first byte determines. `length` is in bytes. `firstBits` are the
// code point's bits in the first byte. `least` is the least code point that needs this length.
struct SequenceForm {
    std::size_t length;
    std::uint32_t firstBits;
    std::uint32_t least;
};

std::optional<SequenceForm> sequenceForm(unsigned char first) {
    if (first < 0x80) {
        return SequenceForm{1, first, 0};
    }
    if ((first & 0xE0) == 0xC0) {
        return SequenceForm{2, first & 0x1FU, 0x80};
    }
    if ((first & 0xF0) == 0xE0) {
        return SequenceForm{3, first & 0x0FU, 0x800};
    }
    if ((first & 0xF8) == 0xF0) {
        return SequenceForm{4, first & 0x07U, 0x10000};
    }
    return std::nullopt;
}

// Reads one code point and removes it from the front of `bytes`.
std::optional<std::uint32_t> takeUTF8(std::string_view& bytes) {
    const auto form = sequenceForm(static_cast<unsigned char>(bytes.front()));
    if (!form || form->length > bytes.size()) {
        return std::nullopt;
    }
    std::uint32_t codePoint = form->firstBits;
    for (std::size_t index = 1; index < form->length; ++index) {
        const auto byte = static_cast<unsigned char>(bytes[index]);
        if ((byte & 0xC0) != 0x80) {
            return std::nullopt;
        }
        codePoint = (codePoint << 6) | (byte & 0x3FU);
    }
    if (codePoint < form->least || codePoint > kLastCodePoint || isSurrogate(codePoint)) {
        return std::nullopt;
    }
    bytes.remove_prefix(form->length);
    return codePoint;
}

std::optional<std::vector<UniChar>> decodeUTF8(std::string_view bytes) {
    std::vector<UniChar> units;
    units.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto codePoint = takeUTF8(bytes);
        if (!codePoint) {
            return std::nullopt;
        }
        appendCodePoint(*codePoint, units);
    }
    return units;
}

std::optional<std::string> encodeUTF8(const UniChar* units, std::size_t count) {
    std::string bytes;
    for (std::size_t index = 0; index < count; ++index) {
        std::uint32_t codePoint = units[index];
        if (isSurrogate(codePoint)) {
            const bool hasPair =
                codePoint < 0xDC00 && index + 1 < count && (units[index + 1] & 0xFC00) == 0xDC00;
            if (!hasPair) {
                return std::nullopt;
            }
            ++index;
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (units[index] - 0xDC00U);
        }
        appendUTF8(codePoint, bytes);
    }
    return bytes;
}

std::optional<UniChar> decodeByte(unsigned char byte, CFStringEncoding encoding) {
    if (byte < 0x80 || encoding == kCFStringEncodingISOLatin1) {
        return byte;
    }
    if (encoding == kCFStringEncodingMacRoman) {
        return kMacRomanUpperHalf[byte - 0x80U];
    }
    return std::nullopt;
}

std::optional<char> encodeUnit(UniChar unit, CFStringEncoding encoding) {
    if (unit < 0x80 || (encoding == kCFStringEncodingISOLatin1 && unit < 0x100)) {
        return static_cast<char>(unit);
    }
    if (encoding == kCFStringEncodingMacRoman) {
        const auto found = std::find(kMacRomanUpperHalf.begin(), kMacRomanUpperHalf.end(), unit);
        if (found != kMacRomanUpperHalf.end()) {
            return static_cast<char>(0x80 + (found - kMacRomanUpperHalf.begin()));
        }
    }
    return std::nullopt;
}

}  // namespace

bool appendCharacter(std::uint32_t codePoint, std::string& utf8) {
    if (codePoint > kLastCodePoint || isSurrogate(codePoint)) {
        return false;
    }
    appendUTF8(codePoint, utf8);
    return true;
}

bool isSupportedEncoding(CFStringEncoding encoding) {
    return encoding == kCFStringEncodingMacRoman || encoding == kCFStringEncodingUTF8 ||
           encoding == kCFStringEncodingISOLatin1 || encoding == kCFStringEncodingASCII;
}

std::optional<std::vector<UniChar>> decodeText(std::string_view bytes, CFStringEncoding encoding) {
    if (!isSupportedEncoding(encoding)) {
        return std::nullopt;
    }
    if (encoding == kCFStringEncodingUTF8) {
        return decodeUTF8(bytes);
    }
    std::vector<UniChar> units;
    units.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto unit = decodeByte(static_cast<unsigned char>(byte), encoding);
        if (!unit) {
            return std::nullopt;
        }
        units.push_back(*unit);
    }
    return units;
}

std::optional<std::string> encodeText(const UniChar* units, std::size_t count, CFStringEncoding encoding) {
    if (!isSupportedEncoding(encoding)) {
        return std::nullopt;
    }
    if (encoding == kCFStringEncodingUTF8) {
        return encodeUTF8(units, count);
    }
    std::string bytes;
    bytes.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        const auto byte = encodeUnit(units[index], encoding);
        if (!byte) {
            return std::nullopt;
        }
        bytes.push_back(*byte);
    }
    return bytes;
}

}  // namespace portability
