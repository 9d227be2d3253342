#include "portability/corefoundation/Object.h"

#include <cstdlib>

#include "portability/corefoundation/TextEncoding.h"

namespace portability {

const Object& toObject(CFTypeRef reference) {
    if (reference == nullptr) std::abort();
    return *static_cast<const Object*>(reference);
}

ObjectHolder newString(std::string_view utf8) {
    auto units = decodeText(utf8, kCFStringEncodingUTF8);
    return ObjectHolder(units ? new __CFString(std::move(*units)) : nullptr);
}

std::string toUtf8(CFTypeRef value) {
    const bool isString = value != nullptr && toObject(value).kind() == kStringKind;
    return isString ? static_cast<CFStringRef>(value)->utf8() : std::string();
}

}  // namespace portability

std::string __CFString::utf8() const {
    return portability::encodeText(units.data(), units.size(), kCFStringEncodingUTF8).value_or(std::string());
}

const portability::Object* __CFDictionary::value(CFTypeRef key) const {
    if (portability::toObject(key).kind() != portability::kStringKind) return nullptr;
    const auto found = values.find(static_cast<CFStringRef>(key)->units);
    return found != values.end() ? found->second.get() : nullptr;
}

portability::ObjectHolder __CFURL::newText(const std::string& utf8) {
    return portability::newString(utf8);
}
