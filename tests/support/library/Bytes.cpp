#include "tests/support/library/Bytes.h"

#include <cstdio>
#include <stdexcept>

namespace dovrel::test {
namespace {

uint8_t digitValue(char digit) {
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    const size_t value = kDigits.find(digit);
    if (value == std::string_view::npos) throw std::invalid_argument("not a hexadecimal digit");
    return static_cast<uint8_t>(value);
}

}  // namespace

CPPByteArray arrayOf(std::string_view text) {
    CPPByteArray array;
    array.set(text.data(), static_cast<uint32_t>(text.size()));
    return array;
}

CPPExpandingByteArray expandingArrayOf(std::string_view text) {
    CPPExpandingByteArray array;
    array.set(text.data(), static_cast<uint32_t>(text.size()));
    return array;
}

CPPByteArray plainArray(uint32_t size) {
    CPPByteArray array;
    array.setFilled(size, 0xEE);
    return array;
}

CPPByteArray arrayOfHex(std::string_view digits) {
    std::string bytes;
    for (size_t i = 0; i < digits.size();) {
        if (digits[i] == ' ') {
            ++i;
            continue;
        }
        bytes.push_back(static_cast<char>(digitValue(digits[i]) << 4 | digitValue(digits.at(i + 1))));
        i += 2;
    }
    return arrayOf(bytes);
}

std::string textOf(const CPPByteArray& array) {
    std::string text;
    for (uint32_t i = 0; i < array.getSize(); ++i) {
        text.push_back(static_cast<char>(array.getByte(i)));
    }
    return text;
}

std::string blockText(const ByteBlock& block) {
    return std::string(block.data.get(), block.data.get() + block.length);
}

std::string hexOf(const CPPByteArray& array) {
    std::string text;
    for (uint32_t i = 0; i < array.getSize(); ++i) {
        char byte[8];
        std::snprintf(byte, sizeof byte, "%s%02X", i == 0 ? "" : " ", array.getByte(i));
        text += byte;
    }
    return text;
}

}  // namespace dovrel::test
