#include "settings/PropertyEntry.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace dovrel {

namespace {

std::string_view bytesOf(const PropertyValue& value) {
    switch (value.type) {
        case PropertyType::kInteger:
            return std::string_view(reinterpret_cast<const char*>(&value.intValue), sizeof value.intValue);
        case PropertyType::kString:
            return value.stringValue;
        case PropertyType::kBinary:
            return value.binaryValue;
        case PropertyType::kUnknown:
            break;
    }
    return std::string_view();
}

uint32_t lengthOf(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<uint32_t>::max()) throw std::bad_alloc();
    return static_cast<uint32_t>(bytes.size());
}

}  // namespace

PropertyEntry::PropertyEntry(std::string_view key, const PropertyValue& value)
    : keyLength_(lengthOf(key)), valueLength_(lengthOf(bytesOf(value))), type_(value.type) {
    const std::string_view bytes = bytesOf(value);
    bytes_.reset(new char[key.size() + bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), std::copy(key.begin(), key.end(), bytes_.get()));
}

PropertyEntry::PropertyEntry(const PropertyEntry& other) : PropertyEntry(other.key(), other.value()) {}

PropertyValue PropertyEntry::value() const {
    const char* const bytes = bytes_.get() + keyLength_;
    switch (type_) {
        case PropertyType::kInteger: {
            int32_t number = 0;
            std::memcpy(&number, bytes, sizeof number);
            return PropertyValue::ofInt(number);
        }
        case PropertyType::kString:
            return PropertyValue::ofString(std::string_view(bytes, valueLength_));
        case PropertyType::kBinary:
            return PropertyValue::ofBinary(bytes, valueLength_);
        case PropertyType::kUnknown:
            break;
    }
    return PropertyValue();
}

}  // namespace dovrel
