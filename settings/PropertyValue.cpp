#include "settings/PropertyValue.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "settings/LineGrammar.h"

namespace dovrel {

namespace {

// If memory runs out, CPPByteArray keeps its old content without reporting it. So the size is checked, and
// the failure is thrown instead of returning an empty array.
CPPByteArray toByteArray(const void* bytes, size_t length) {
    if (length > std::numeric_limits<uint32_t>::max()) throw std::bad_alloc();
    CPPByteArray array;
    array.setOrThrow(bytes, static_cast<uint32_t>(length));
    return array;
}

int32_t leadingBytesAsInt(std::string_view bytes) {
    int32_t value = 0;
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
    return value;
}

}  // namespace

PropertyValue PropertyValue::ofInt(int32_t value) {
    PropertyValue result;
    result.type = PropertyType::kInteger;
    result.intValue = value;
    return result;
}

PropertyValue PropertyValue::ofString(std::string_view value) {
    PropertyValue result;
    result.type = PropertyType::kString;
    result.stringValue = value;
    return result;
}

PropertyValue PropertyValue::ofBinary(const void* bytes, size_t length) {
    PropertyValue result;
    result.type = PropertyType::kBinary;
    result.binaryValue = std::string_view(static_cast<const char*>(bytes), length);
    return result;
}

int32_t PropertyValue::asInt() const {
    switch (type) {
        case PropertyType::kInteger:
            return intValue;
        case PropertyType::kString:
            return leadingInteger(stringValue);
        case PropertyType::kBinary:
            return leadingBytesAsInt(binaryValue);
        case PropertyType::kUnknown:
            break;
    }
    return 0;
}

std::string PropertyValue::asString() const {
    switch (type) {
        case PropertyType::kInteger:
            return std::to_string(intValue);
        case PropertyType::kString:
            return std::string(stringValue);
        case PropertyType::kBinary:
            return std::string(binaryValue);
        case PropertyType::kUnknown:
            break;
    }
    return std::string();
}

CPPByteArray PropertyValue::asBinary() const {
    switch (type) {
        case PropertyType::kInteger:
            return toByteArray(&intValue, sizeof intValue);
        case PropertyType::kString:
            return toByteArray(stringValue.data(), stringValue.size());
        case PropertyType::kBinary:
            return toByteArray(binaryValue.data(), binaryValue.size());
        case PropertyType::kUnknown:
            break;
    }
    return CPPByteArray();
}

}  // namespace dovrel
