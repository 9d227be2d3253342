// Fuzz target for number literals and numbers in any base: they are compared with digit-by-digit arithmetic.
// Numbers are also written as text and read again. The first byte of the input selects the base.

#include <string>

#include "FuzzTarget.h"
#include "platform/text/TextConversions.h"

namespace {

using namespace dovrel;

/// Returns the value of a digit of either case, or 36 for a character that is not a digit in any base.
uint32_t toDigit(char c) {
    if (c >= '0' && c <= '9') return static_cast<uint32_t>(c - '0');
    if (c >= 'a' && c <= 'z') return static_cast<uint32_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'Z') return static_cast<uint32_t>(c - 'A' + 10);
    return 36;
}

struct Expected {
    uint64_t value = 0;
    bool failed = false;
};

Expected numberIn(const std::string& text, uint32_t base) {
    Expected number;
    const bool hasSign = !text.empty() && (text[0] == '-' || text[0] == '+');
    for (size_t i = hasSign ? 1 : 0; i < text.size(); ++i) {
        number.value *= base;
        const uint32_t digit = toDigit(text[i]);
        if (digit >= base) return {number.value, true};
        number.value += digit;
    }
    if (hasSign && text[0] == '-') number.value = 0 - number.value;
    return number;
}

Expected literalIn(const std::string& text) {
    const std::string start = text.substr(0, 2);
    if (start == "0x" || start == "0X") return numberIn(text.substr(2), 16);
    if (start == "0b" || start == "0B") return numberIn(text.substr(2), 2);
    if (!text.empty() && text[0] == '0') return numberIn(text.substr(1), 8);
    return numberIn(text, 10);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const uint32_t base = 2 + data[0] % 35;
    const std::string text(data + 1, data + size);

    const Expected number = numberIn(text, base);
    FUZZ_CHECK(static_cast<uint64_t>(textToNumber(text, base)) == number.value);
    FUZZ_CHECK(lastConversionFailed == number.failed);
    const Expected literal = literalIn(text);
    FUZZ_CHECK(parseNumberLiteral(text) == static_cast<uint32_t>(literal.value));
    FUZZ_CHECK(lastConversionFailed == literal.failed);

    const std::string written = numberToText(number.value, base, data[0]);
    FUZZ_CHECK(written.size() >= data[0] && !written.empty());
    FUZZ_CHECK(static_cast<uint64_t>(textToNumber(written, base)) == number.value && !lastConversionFailed);
    return 0;
}
