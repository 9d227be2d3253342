#include "portability/corefoundation/BinaryPropertyList.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "portability/corefoundation/TextEncoding.h"

namespace portability {
namespace {

constexpr std::string_view kHeader = "bplist0";
constexpr std::size_t kObjectsStart = 8;
constexpr std::size_t kTrailerSize = 32;
constexpr int kMostLevels = 128;

// The kinds of objects: the upper four bits of an object's marker byte.
enum Kind : unsigned {
    kBoolean = 0x0,
    kInteger = 0x1,
    kReal = 0x2,
    kDate = 0x3,
    kData = 0x4,
    kAscii = 0x5,
    kUtf16 = 0x6,
    kArray = 0xA,
    kDictionary = 0xD
};

// The position of an object's content after its marker, and its number of bytes, UTF-16 units or members.
struct Extent {
    std::size_t start;
    std::size_t count;
};

class Reader {
  public:
    explicit Reader(std::string_view document) : document_(document) {}

    ObjectHolder readRoot() { return readTrailer() ? retained(object(top_, kMostLevels)) : ObjectHolder(); }

  private:
    // One entry of the offset table, with the object read from it (if it was read already) and its depth.
    struct Entry {
        ObjectHolder value;
        int levels = 0;
    };

    bool readTrailer();
    static ObjectHolder retained(const Object* object);
    const Object* object(uint64_t index, int levelsLeft);
    ObjectHolder readValue(std::size_t at, int levelsLeft, int& levels);
    ObjectHolder readCollection(Kind kind, std::size_t at, unsigned count, int levelsLeft, int& levels);
    bool readMembers(std::size_t at, std::size_t count, int levelsLeft, std::vector<const Object*>& values,
                     int& levels);

    bool extent(std::size_t at, unsigned marked, std::size_t width, Extent& extent) const;
    ObjectHolder readInteger(std::size_t at, unsigned power) const;
    bool readDouble(std::size_t at, unsigned power, double& value) const;
    ObjectHolder readReal(std::size_t at, unsigned power) const;
    ObjectHolder readDate(std::size_t at, unsigned power) const;
    ObjectHolder readData(std::size_t at, unsigned count) const;
    ObjectHolder readAscii(std::size_t at, unsigned count) const;
    ObjectHolder readUtf16(std::size_t at, unsigned count) const;

    // Returns whether `size` bytes at `at` end before the offset table. All objects are between the header
    // and that table.
    bool fits(uint64_t at, uint64_t size) const { return at <= table_ && size <= table_ - at; }

    uint64_t number(std::size_t at, std::size_t width) const {
        uint64_t value = 0;
        for (std::size_t i = 0; i < width; ++i) {
            value = (value << 8) | static_cast<unsigned char>(document_[at + i]);
        }
        return value;
    }

    const std::string_view document_;
    std::size_t offsetWidth_ = 0;
    std::size_t referenceWidth_ = 0;
    uint64_t top_ = 0;
    std::size_t table_ = 0;
    std::vector<Entry> objects_;
};

bool Reader::readTrailer() {
    if (document_.size() < kObjectsStart + kTrailerSize) {
        return false;
    }
    const std::size_t trailer = document_.size() - kTrailerSize;
    offsetWidth_ = static_cast<std::size_t>(number(trailer + 6, 1));
    referenceWidth_ = static_cast<std::size_t>(number(trailer + 7, 1));
    const uint64_t count = number(trailer + 8, 8);
    top_ = number(trailer + 16, 8);
    const uint64_t table = number(trailer + 24, 8);
    const bool hasWidths =
        offsetWidth_ >= 1 && offsetWidth_ <= 8 && referenceWidth_ >= 1 && referenceWidth_ <= 8;
    if (!hasWidths || table < kObjectsStart || table > trailer || top_ >= count ||
        count > (trailer - table) / offsetWidth_) {
        return false;
    }
    table_ = static_cast<std::size_t>(table);
    objects_.resize(static_cast<std::size_t>(count));
    return true;
}

// Returns an object, which it reads at the first call. The limit of levels also ends circular references.
const Object* Reader::object(uint64_t index, int levelsLeft) {
    if (index >= objects_.size() || levelsLeft == 0) {
        return nullptr;
    }
    const auto position = static_cast<std::size_t>(index);
    if (!objects_[position].value) {
        const uint64_t at = number(table_ + position * offsetWidth_, offsetWidth_);
        if (at < kObjectsStart || !fits(at, 1)) {
            return nullptr;
        }
        int levels = 1;
        ObjectHolder value = readValue(static_cast<std::size_t>(at), levelsLeft, levels);
        objects_[position] = {std::move(value), levels};
    }
    // An object that was read at a higher level may be nested too deeply for this one.
    return objects_[position].levels <= levelsLeft ? objects_[position].value.get() : nullptr;
}

ObjectHolder Reader::retained(const Object* object) {
    if (object != nullptr) {
        object->retain();
    }
    return ObjectHolder(object);
}

ObjectHolder Reader::readValue(std::size_t at, int levelsLeft, int& levels) {
    const auto marker = static_cast<unsigned char>(document_[at]);
    const unsigned low = marker & 0xF;
    switch (const auto kind = static_cast<Kind>(marker >> 4)) {
        case kBoolean:
            return ObjectHolder(low == 8 || low == 9 ? new __CFBoolean(low == 9) : nullptr);
        case kInteger:
            return readInteger(at + 1, low);
        case kReal:
            return readReal(at + 1, low);
        case kDate:
            return readDate(at + 1, low);
        case kData:
            return readData(at, low);
        case kAscii:
            return readAscii(at, low);
        case kUtf16:
            return readUtf16(at, low);
        case kArray:
        case kDictionary:
            return readCollection(kind, at, low, levelsLeft, levels);
    }
    return ObjectHolder();
}

// Reads the number of elements. `width` is the size in bytes of one element: a byte, a UTF-16 unit or a
// reference to a member.
bool Reader::extent(std::size_t at, unsigned marked, std::size_t width, Extent& extent) const {
    constexpr unsigned kCountFollows = 0xF;
    extent = {at + 1, marked};
    if (marked == kCountFollows) {
        const unsigned marker = fits(at + 1, 1) ? static_cast<unsigned char>(document_[at + 1]) : 0;
        const std::size_t size = std::size_t{1} << (marker & 0xF);
        if (marker >> 4 != kInteger || size > 8 || !fits(at + 2, size)) {
            return false;
        }
        const uint64_t count = number(at + 2, size);
        if (count > document_.size()) {
            return false;
        }
        extent = {at + 2 + size, static_cast<std::size_t>(count)};
    }
    return extent.count <= (table_ - extent.start) / width;
}

bool Reader::readMembers(std::size_t at, std::size_t count, int levelsLeft,
                         std::vector<const Object*>& values, int& levels) {
    for (std::size_t i = 0; i < count; ++i) {
        const uint64_t index = number(at + i * referenceWidth_, referenceWidth_);
        const Object* const value = object(index, levelsLeft - 1);
        if (value == nullptr) {
            return false;
        }
        values.push_back(value);
        levels = std::max(levels, objects_[static_cast<std::size_t>(index)].levels + 1);
    }
    return true;
}

ObjectHolder Reader::readCollection(Kind kind, std::size_t at, unsigned count, int levelsLeft, int& levels) {
    const bool isDictionary = kind == kDictionary;
    Extent place;
    std::vector<const Object*> keys;
    std::vector<const Object*> values;
    if (!extent(at, count, referenceWidth_ * (isDictionary ? 2 : 1), place)) {
        return ObjectHolder();
    }
    const std::size_t afterKeys = place.start + (isDictionary ? place.count * referenceWidth_ : 0);
    if (!readMembers(afterKeys, place.count, levelsLeft, values, levels)) {
        return ObjectHolder();
    }
    if (!isDictionary) {
        __CFArray::Values members;
        for (const Object* const value : values) {
            members.push_back(retained(value));
        }
        return ObjectHolder(new __CFArray(std::move(members)));
    }
    if (!readMembers(place.start, place.count, levelsLeft, keys, levels)) {
        return ObjectHolder();
    }
    __CFDictionary::Values members;
    for (std::size_t i = 0; i < place.count; ++i) {
        if (keys[i]->kind() != kStringKind) {
            return ObjectHolder();
        }
        members.insert_or_assign(static_cast<const __CFString*>(keys[i])->units, retained(values[i]));
    }
    return ObjectHolder(new __CFDictionary(std::move(members)));
}

// Integers of 8 bytes are signed, shorter ones are unsigned. Integers of 16 bytes are accepted only if their
// upper 8 bytes are zero.
ObjectHolder Reader::readInteger(std::size_t at, unsigned power) const {
    const std::size_t size = std::size_t{1} << power;
    if (size > 16 || !fits(at, size)) {
        return ObjectHolder();
    }
    const uint64_t value = number(at + (size == 16 ? 8 : 0), std::min<std::size_t>(size, 8));
    const bool fitsInWord = size < 16 || number(at, 8) == 0;
    return ObjectHolder(fitsInWord ? new __CFNumber(static_cast<long long>(value)) : nullptr);
}

bool Reader::readDouble(std::size_t at, unsigned power, double& value) const {
    const std::size_t size = std::size_t{1} << power;
    if ((size != sizeof(float) && size != sizeof(double)) || !fits(at, size)) {
        return false;
    }
    if (size == sizeof(float)) {
        const auto bits = static_cast<uint32_t>(number(at, size));
        float single;
        std::memcpy(&single, &bits, sizeof single);
        value = static_cast<double>(single);
        return true;
    }
    const uint64_t bits = number(at, size);
    std::memcpy(&value, &bits, sizeof value);
    return true;
}

ObjectHolder Reader::readReal(std::size_t at, unsigned power) const {
    double value;
    return ObjectHolder(readDouble(at, power, value) ? new __CFNumber(value) : nullptr);
}

ObjectHolder Reader::readDate(std::size_t at, unsigned power) const {
    constexpr unsigned kDouble = 3;
    double seconds;
    const bool isTime = power == kDouble && readDouble(at, power, seconds) && std::isfinite(seconds);
    return ObjectHolder(isTime ? new __CFDate(seconds) : nullptr);
}

ObjectHolder Reader::readData(std::size_t at, unsigned count) const {
    Extent place;
    if (!extent(at, count, 1, place)) {
        return ObjectHolder();
    }
    return ObjectHolder(new __CFData(std::string(document_.substr(place.start, place.count))));
}

ObjectHolder Reader::readAscii(std::size_t at, unsigned count) const {
    Extent place;
    if (!extent(at, count, 1, place)) {
        return ObjectHolder();
    }
    auto units = decodeText(document_.substr(place.start, place.count), kCFStringEncodingASCII);
    return ObjectHolder(units ? new __CFString(std::move(*units)) : nullptr);
}

ObjectHolder Reader::readUtf16(std::size_t at, unsigned count) const {
    Extent place;
    if (!extent(at, count, sizeof(UniChar), place)) {
        return ObjectHolder();
    }
    std::vector<UniChar> units;
    for (std::size_t i = 0; i < place.count; ++i) {
        units.push_back(static_cast<UniChar>(number(place.start + i * sizeof(UniChar), sizeof(UniChar))));
    }
    return ObjectHolder(new __CFString(std::move(units)));
}

}  // namespace

bool isBinaryPropertyList(std::string_view document) {
    return document.substr(0, kHeader.size()) == kHeader;
}

ObjectHolder readBinaryPropertyList(std::string_view document) {
    return Reader(document).readRoot();
}

}  // namespace portability
