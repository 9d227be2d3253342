#include "settings/PropertyValue.h"

#include <limits>
#include <new>

#include "platform/TextConversions.h"
#include "settings/LineGrammar.h"

namespace dovrel {

namespace {

// Byte arrays keep their old content where memory runs out; a store that silently lost a value would be worse
// than one that could not be filled.
void fill(CPPByteArray& array, const void* bytes, size_t length) {
    if (length > std::numeric_limits<uint32_t>::max()) throw std::bad_alloc();
    array.set(bytes, static_cast<uint32_t>(length));
    if (array.getSize() != length) throw std::bad_alloc();
}

}  // namespace

PropertyValue::PropertyValue(int32_t value) : type(PropertyType::kInteger), intValue(value) {}

PropertyValue::PropertyValue(std::string_view value) : type(PropertyType::kString), stringValue(value) {}

PropertyValue::PropertyValue(const void* bytes, size_t length) : type(PropertyType::kBinary) {
    fill(binaryValue, bytes, length);
}

int32_t PropertyValue::asInt() const {
    switch (type) {
        case PropertyType::kInteger:
            return intValue;
        case PropertyType::kString:
            return leadingInteger(stringValue);
        case PropertyType::kBinary:
            break;
        case PropertyType::kUnknown:
            return 0;
    }
    int32_t value = 0;
    binaryValue.readBytes(0, &value, sizeof value);
    return value;
}

std::string PropertyValue::asString() const {
    switch (type) {
        case PropertyType::kInteger:
            return std::to_string(intValue);
        case PropertyType::kString:
            return stringValue;
        case PropertyType::kBinary:
            return bytesToText(binaryValue);
        case PropertyType::kUnknown:
            break;
    }
    return std::string();
}

CPPByteArray PropertyValue::asBinary() const {
    CPPByteArray bytes;
    switch (type) {
        case PropertyType::kInteger:
            fill(bytes, &intValue, sizeof intValue);
            break;
        case PropertyType::kString:
            fill(bytes, stringValue.data(), stringValue.size());
            break;
        case PropertyType::kBinary:
            fill(bytes, binaryValue.data(), binaryValue.getSize());
            break;
        case PropertyType::kUnknown:
            break;
    }
    return bytes;
}

}  // namespace dovrel
