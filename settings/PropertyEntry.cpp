#include "settings/PropertyEntry.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "settings/LineGrammar.h"

namespace dovrel {

namespace {

constexpr size_t kLongest = std::numeric_limits<uint32_t>::max();

std::string_view bytesOf(const PropertyValue& value) {
    return value.type == PropertyType::kBinary ? value.binaryValue : value.stringValue;
}

uint32_t lengthOf(std::string_view bytes) {
    if (bytes.size() > kLongest) throw std::bad_alloc();
    return static_cast<uint32_t>(bytes.size());
}

const char* newBlock(std::string_view key, std::string_view value) {
    char* const block = new char[key.size() + value.size()];
    std::copy(value.begin(), value.end(), std::copy(key.begin(), key.end(), block));
    return block;
}

}  // namespace

PropertyEntry::PropertyEntry(std::string_view key, const PropertyValue& value)
    : keyLength_(lengthOf(key)), valueOffset_(keyLength_), type_(value.type), ownsBytes_(true) {
    const std::string digits =
        type_ == PropertyType::kInteger ? std::to_string(value.intValue) : std::string();
    const std::string_view bytes =
        type_ == PropertyType::kInteger ? std::string_view(digits) : bytesOf(value);
    valueLength_ = lengthOf(bytes);
    bytes_ = newBlock(key, bytes);
}

PropertyEntry::PropertyEntry(std::string_view key, PropertyType type, std::string_view valueText)
    : bytes_(key.data()),
      keyLength_(static_cast<uint32_t>(key.size())),
      valueOffset_(static_cast<uint32_t>(valueText.data() - key.data())),
      valueLength_(static_cast<uint32_t>(valueText.size())),
      type_(type),
      ownsBytes_(false) {}

PropertyEntry::PropertyEntry(const PropertyEntry& other) : PropertyEntry(other.key(), other.value()) {}

PropertyEntry::~PropertyEntry() {
    if (ownsBytes_) delete[] bytes_;
}

bool PropertyEntry::canReferTo(std::string_view key, std::string_view valueText) {
    return static_cast<size_t>(valueText.data() + valueText.size() - key.data()) <= kLongest;
}

PropertyValue PropertyEntry::value() const {
    const std::string_view bytes(bytes_ + valueOffset_, valueLength_);
    switch (type_) {
        case PropertyType::kInteger:
            return PropertyValue::ofInt(leadingInteger(bytes));
        case PropertyType::kString:
            return PropertyValue::ofString(bytes);
        case PropertyType::kBinary:
            return PropertyValue::ofBinary(bytes.data(), bytes.size());
        case PropertyType::kUnknown:
            break;
    }
    return PropertyValue();
}

}  // namespace dovrel
