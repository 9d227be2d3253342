#include "foundation/BinaryPropertyList.h"

#include "foundation/FoundationObject.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace portability {
namespace {

constexpr std::string_view kHeader = "bplist0";
constexpr std::size_t kObjectsStart = 8;
constexpr std::size_t kTrailerSize = 32;
constexpr int kMostLevels = 128;

// What the marker byte of an object says in its upper half.
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

// Where an object's content begins, after its marker, and how many bytes, units or members it has.
struct Extent {
    std::size_t start;
    std::size_t count;
};

class Reader {
   public:
    explicit Reader(std::string_view document) : document_(document) {}
    ~Reader() {
        for (const Object& object : objects_) {
            [object.value release];
        }
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    id newRoot() { return readTrailer() ? [object(top_, kMostLevels) retain] : nil; }

   private:
    // One entry of the table of offsets, with what was made of it so far.
    struct Object {
        id value = nil;
        int levels = 0;
    };

    bool readTrailer();
    id object(uint64_t index, int levelsLeft);
    id newValue(std::size_t at, int levelsLeft, int& levels);
    id newCollection(Kind kind, std::size_t at, unsigned count, int levelsLeft, int& levels);
    bool members(std::size_t at, std::size_t count, int levelsLeft, std::vector<id>& values, int& levels);

    bool extent(std::size_t at, unsigned marked, std::size_t width, Extent& extent) const;
    id newInteger(std::size_t at, unsigned power) const;
    id newReal(std::size_t at, unsigned power) const;
    id newDate(std::size_t at, unsigned power) const;
    id newData(std::size_t at, unsigned count) const;
    id newAscii(std::size_t at, unsigned count) const;
    id newUtf16(std::size_t at, unsigned count) const;

    // Objects lie between the header and the table.
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
    std::vector<Object> objects_;
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

// A circle of references ends where no levels are left.
id Reader::object(uint64_t index, int levelsLeft) {
    if (index >= objects_.size() || levelsLeft == 0) {
        return nil;
    }
    const auto position = static_cast<std::size_t>(index);
    if (objects_[position].value == nil) {
        const uint64_t at = number(table_ + position * offsetWidth_, offsetWidth_);
        int levels = 1;
        const id value = at >= kObjectsStart && fits(at, 1)
                             ? newValue(static_cast<std::size_t>(at), levelsLeft, levels)
                             : nil;
        objects_[position] = {value, levels};
    }
    // What was made at a higher level may be too deep for this one.
    return objects_[position].levels <= levelsLeft ? objects_[position].value : nil;
}

id Reader::newValue(std::size_t at, int levelsLeft, int& levels) {
    const auto marker = static_cast<unsigned char>(document_[at]);
    const unsigned low = marker & 0xF;
    switch (const auto kind = static_cast<Kind>(marker >> 4)) {
        case kBoolean:
            return low == 8 || low == 9 ? [[NSNumber alloc] initWithBool:low == 9] : nil;
        case kInteger:
            return newInteger(at + 1, low);
        case kReal:
            return newReal(at + 1, low);
        case kDate:
            return newDate(at + 1, low);
        case kData:
            return newData(at, low);
        case kAscii:
            return newAscii(at, low);
        case kUtf16:
            return newUtf16(at, low);
        case kArray:
        case kDictionary:
            return newCollection(kind, at, low, levelsLeft, levels);
    }
    return nil;
}

// `width` is that of one byte, unit or member.
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

bool Reader::members(std::size_t at, std::size_t count, int levelsLeft, std::vector<id>& values,
                     int& levels) {
    for (std::size_t i = 0; i < count; ++i) {
        const uint64_t index = number(at + i * referenceWidth_, referenceWidth_);
        const id value = object(index, levelsLeft - 1);
        if (value == nil) {
            return false;
        }
        values.push_back(value);
        levels = std::max(levels, objects_[static_cast<std::size_t>(index)].levels + 1);
    }
    return true;
}

id Reader::newCollection(Kind kind, std::size_t at, unsigned count, int levelsLeft, int& levels) {
    const bool isDictionary = kind == kDictionary;
    Extent place;
    std::vector<id> keys;
    std::vector<id> values;
    if (!extent(at, count, referenceWidth_ * (isDictionary ? 2 : 1), place)) {
        return nil;
    }
    const std::size_t afterKeys = place.start + (isDictionary ? place.count * referenceWidth_ : 0);
    if (!members(afterKeys, place.count, levelsLeft, values, levels)) {
        return nil;
    }
    if (!isDictionary) {
        return [[NSArray alloc] initWithObjects:values.data() count:values.size()];
    }
    if (!members(place.start, place.count, levelsLeft, keys, levels)) {
        return nil;
    }
    for (const id key : keys) {
        if (![key isKindOfClass:[NSString class]]) {
            return nil;
        }
    }
    return [[NSDictionary alloc] initWithObjects:values.data() forKeys:keys.data() count:values.size()];
}

// Integers have a sign from 8 bytes on; of 16 bytes those are known that need no more than 8 without a sign.
id Reader::newInteger(std::size_t at, unsigned power) const {
    const std::size_t size = std::size_t{1} << power;
    if (size > 16 || !fits(at, size)) {
        return nil;
    }
    if (size == 16) {
        return number(at, 8) == 0 ? [[NSNumber alloc] initWithUnsignedLongLong:number(at + 8, 8)] : nil;
    }
    return [[NSNumber alloc] initWithLongLong:static_cast<long long>(number(at, size))];
}

id Reader::newReal(std::size_t at, unsigned power) const {
    const std::size_t size = std::size_t{1} << power;
    if ((size != sizeof(float) && size != sizeof(double)) || !fits(at, size)) {
        return nil;
    }
    if (size == sizeof(float)) {
        const auto bits = static_cast<uint32_t>(number(at, size));
        float value;
        std::memcpy(&value, &bits, sizeof value);
        return [[NSNumber alloc] initWithFloat:value];
    }
    const uint64_t bits = number(at, size);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return [[NSNumber alloc] initWithDouble:value];
}

id Reader::newDate(std::size_t at, unsigned power) const {
    constexpr unsigned kDouble = 3;
    NSNumber* seconds = power == kDouble ? newReal(at, power) : nil;
    const bool isTime = seconds != nil && std::isfinite([seconds doubleValue]);
    NSDate* date =
        isTime ? [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:[seconds doubleValue]] : nil;
    [seconds release];
    return date;
}

id Reader::newData(std::size_t at, unsigned count) const {
    Extent place;
    return extent(at, count, 1, place)
               ? [[NSData alloc] initWithBytes:document_.data() + place.start length:place.count]
               : nil;
}

id Reader::newAscii(std::size_t at, unsigned count) const {
    Extent place;
    return extent(at, count, 1, place) ? [[NSString alloc] initWithBytes:document_.data() + place.start
                                                                  length:place.count
                                                                encoding:NSASCIIStringEncoding]
                                       : nil;
}

id Reader::newUtf16(std::size_t at, unsigned count) const {
    Extent place;
    if (!extent(at, count, sizeof(UniChar), place)) {
        return nil;
    }
    std::vector<UniChar> units;
    for (std::size_t i = 0; i < place.count; ++i) {
        units.push_back(static_cast<UniChar>(number(place.start + i * sizeof(UniChar), sizeof(UniChar))));
    }
    return newString(units);
}

}  // namespace

bool isBinaryPropertyList(std::string_view document) { return document.substr(0, kHeader.size()) == kHeader; }

id newObjectOfBinaryPropertyList(std::string_view document) { return Reader(document).newRoot(); }

}  // namespace portability
