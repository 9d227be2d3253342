// Builds event images byte by byte, without the code under test.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

inline void appendNumber(Bytes& bytes, uint32_t number) {
    const auto* raw = reinterpret_cast<const uint8_t*>(&number);
    bytes.insert(bytes.end(), raw, raw + sizeof number);
}

/// Returns one item; `kind` 1 is an attribute, 2 a parameter. The size in the header can be wrong on purpose.
inline Bytes itemBytes(uint32_t keyword, const std::string& data, uint32_t kind = 2,
                       int64_t forgedSize = -1) {
    Bytes bytes;
    appendNumber(bytes, keyword);
    appendNumber(bytes, 0x54455854);  // 'TEXT'
    appendNumber(bytes,
                 forgedSize < 0 ? static_cast<uint32_t>(data.size()) : static_cast<uint32_t>(forgedSize));
    appendNumber(bytes, kind);
    bytes.insert(bytes.end(), data.begin(), data.end());
    while (bytes.size() % 8 != 0)
        bytes.push_back(0);
    return bytes;
}

/// Returns the data of the first item, whose header must be right.
inline std::string firstItemText(const uint8_t* image, size_t size) {
    constexpr size_t kHeader = 4 * sizeof(uint32_t);
    if (size < kHeader) return "(none)";
    uint32_t dataSize = 0;
    std::memcpy(&dataSize, image + 2 * sizeof dataSize, sizeof dataSize);
    return std::string(reinterpret_cast<const char*>(image) + kHeader, dataSize);
}

inline Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}
