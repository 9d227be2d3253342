#include "settings/PropertyEntry.h"

#include <algorithm>

namespace dovrel {

namespace {

std::string_view bytesOf(const PropertyValue& value) {
    return value.type == PropertyType::kBinary ? value.binaryValue : value.stringValue;
}

}  // namespace

PropertyEntry::PropertyEntry(std::string_view key, const PropertyValue& value)
    : bytes_(new char[key.size() + bytesOf(value).size()]),
      keyLength_(key.size()),
      valueLength_(bytesOf(value).size()),
      intValue_(value.intValue),
      type_(value.type) {
    const std::string_view bytes = bytesOf(value);
    std::copy(bytes.begin(), bytes.end(), std::copy(key.begin(), key.end(), bytes_.get()));
}

PropertyEntry::PropertyEntry(const PropertyEntry& other) : PropertyEntry(other.key(), other.value()) {}

PropertyValue PropertyEntry::value() const {
    const char* const bytes = bytes_.get() + keyLength_;
    switch (type_) {
        case PropertyType::kInteger:
            return PropertyValue::ofInt(intValue_);
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
