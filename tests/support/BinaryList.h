// Builds property lists in the binary format object by object, so that a test
// can damage each part on purpose.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace dovrel::test {

/// Returns `value` in `width` bytes, most significant byte first.
inline std::string bigEndian(uint64_t value, unsigned width) {
    std::string bytes;
    for (unsigned i = width; i > 0; --i)
        bytes += i > 8 ? '\0' : static_cast<char>(value >> (8 * (i - 1)));
    return bytes;
}

/// Returns an object whose marker has `kind` in its upper half and the count in
/// its lower half, then the content.
inline std::string countedObject(unsigned kind, uint64_t count, const std::string& content) {
    const std::string marker(1, static_cast<char>((kind << 4) | (count < 15 ? count : 15)));
    return marker + (count < 15 ? "" : "\x13" + bigEndian(count, 8)) + content;
}

inline std::string asciiObject(const std::string& text) {
    return countedObject(0x5, text.size(), text);
}

/// Returns a UTF-16 string object. Each unit in `units` is two bytes, most significant byte first.
inline std::string utf16Object(const std::string& units) {
    return countedObject(0x6, units.size() / 2, units);
}

/// Returns references to objects: their positions in the list, four bytes each.
inline std::string references(const std::vector<uint64_t>& objects) {
    std::string bytes;
    for (const uint64_t object : objects)
        bytes += bigEndian(object, 4);
    return bytes;
}

inline std::string arrayObject(const std::vector<uint64_t>& members) {
    return countedObject(0xA, members.size(), references(members));
}

inline std::string dictionaryObject(const std::vector<uint64_t>& keys, const std::vector<uint64_t>& values) {
    return countedObject(0xD, keys.size(), references(keys) + references(values));
}

/// The trailer at the end of a list.
struct BinaryTrailer {
    unsigned offsetWidth = 4;
    unsigned referenceWidth = 4;
    uint64_t count = 0;
    uint64_t top = 0;
    uint64_t table = 0;

    std::string bytes() const {
        return std::string(6, '\0') + bigEndian(offsetWidth, 1) + bigEndian(referenceWidth, 1) +
               bigEndian(count, 8) + bigEndian(top, 8) + bigEndian(table, 8);
    }
};

/// Returns the list without its trailer and sets `trailer` to the matching one.
inline std::string binaryListBody(const std::vector<std::string>& objects, BinaryTrailer& trailer) {
    std::string list = "bplist00";
    std::string table;
    for (const std::string& object : objects) {
        table += bigEndian(list.size(), 4);
        list += object;
    }
    trailer.count = objects.size();
    trailer.table = list.size();
    return list + table;
}

/// Returns a complete list. Its value is the first object.
inline std::string binaryList(const std::vector<std::string>& objects) {
    BinaryTrailer trailer;
    const std::string body = binaryListBody(objects, trailer);
    return body + trailer.bytes();
}

}  // namespace dovrel::test
