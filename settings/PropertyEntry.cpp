#include "settings/PropertyEntry.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "settings/LineGrammar.h"

namespace dovrel {

namespace {

constexpr size_t kLongest = std::numeric_limits<uint32_t>::max();

std::string_view storedBytes(const PropertyValue& value) {
    return value.type == PropertyType::kBinary ? value.binaryValue : value.stringValue;
}

uint32_t checkedLength(size_t length) {
    if (length > kLongest) throw std::bad_alloc();
    return static_cast<uint32_t>(length);
}

char* copyTo(std::string_view bytes, char* at) {
    return std::copy(bytes.begin(), bytes.end(), at);
}

bool isText(PropertyType type) {
    return type == PropertyType::kInteger || type == PropertyType::kString;
}

// Returns whether the text between key and value is only a line feed, the type word and ":".
bool isValueMark(std::string_view between, PropertyType type) {
    const std::string_view word = typeWord(type);
    return between.size() == 1 + word.size() + 1 && between.front() == kLineFeed &&
           between.substr(1, word.size()) == word && between.back() == kTypeWordEnd;
}

// Returns whether key and value are in the text exactly as they would be saved: reading trimmed nothing,
// skipped nothing, and the number is in its normal form.
bool isStoredAsSaved(std::string_view text, std::string_view key, PropertyType type, std::string_view value) {
    const auto keyBegin = static_cast<size_t>(key.data() - text.data());
    const size_t keyEnd = keyBegin + key.size();
    const auto valueBegin = static_cast<size_t>(value.data() - text.data());
    const size_t valueEnd = valueBegin + value.size();
    return keyBegin >= kKeyLineMark.size() &&
           text.substr(keyBegin - kKeyLineMark.size(), kKeyLineMark.size()) == kKeyLineMark &&
           isValueMark(text.substr(keyEnd, valueBegin - keyEnd), type) && valueEnd < text.size() &&
           text[valueEnd] == kLineFeed &&
           (type == PropertyType::kString || std::to_string(leadingInteger(value)) == value);
}

}  // namespace

PropertyEntry::PropertyEntry(std::string_view key, const PropertyValue& value)
    : keyLength_(checkedLength(key.size())),
      type_(value.type),
      ownsBytes_(true),
      isStoredAsSaved_(isText(type_)) {
    const std::string digits =
        type_ == PropertyType::kInteger ? std::to_string(value.intValue) : std::string();
    const std::string_view bytes =
        type_ == PropertyType::kInteger ? std::string_view(digits) : storedBytes(value);
    const size_t gap = isStoredAsSaved_ ? 1 + typeWord(type_).size() + 1 : 0;
    valueOffset_ = checkedLength(key.size() + gap);
    valueLength_ = checkedLength(bytes.size());
    bytes_ = newBlock(key, bytes);
}

PropertyEntry::PropertyEntry(std::string_view text, std::string_view key, PropertyType type,
                             std::string_view valueText)
    : bytes_(key.data()),
      keyLength_(static_cast<uint32_t>(key.size())),
      valueOffset_(static_cast<uint32_t>(valueText.data() - key.data())),
      valueLength_(static_cast<uint32_t>(valueText.size())),
      type_(type),
      ownsBytes_(false),
      isStoredAsSaved_(isStoredAsSaved(text, key, type, valueText)) {}

PropertyEntry::PropertyEntry(const PropertyEntry& other) : PropertyEntry(other.key(), other.value()) {}

PropertyEntry::~PropertyEntry() {
    if (ownsBytes_) delete[](isStoredAsSaved_ ? savedForm().data() : bytes_);
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

std::string_view PropertyEntry::savedForm() const {
    if (!isStoredAsSaved_) return std::string_view();
    return std::string_view(bytes_ - kKeyLineMark.size(), savedLength());
}

size_t PropertyEntry::savedLength() const {
    return kKeyLineMark.size() + valueOffset_ + valueLength_ + 1;
}

// Allocates the block and returns the address of the key in it. If the entry is stored as it is saved, the
// mark of the key line precedes the key.
const char* PropertyEntry::newBlock(std::string_view key, std::string_view value) const {
    if (!isStoredAsSaved_) {
        char* const block = new char[key.size() + value.size()];
        copyTo(value, copyTo(key, block));
        return block;
    }
    char* const block = new char[savedLength()];
    char* const keyPlace = copyTo(kKeyLineMark, block);
    char* at = copyTo(key, keyPlace);
    *at++ = kLineFeed;
    at = copyTo(typeWord(type_), at);
    *at++ = kTypeWordEnd;
    at = copyTo(value, at);
    *at = kLineFeed;
    return keyPlace;
}

}  // namespace dovrel
