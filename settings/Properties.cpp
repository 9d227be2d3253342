#include "settings/Properties.h"

#include <new>

#include "client/exceptions/CPPException.h"
#include "platform/TextConversions.h"
#include "settings/EntryReader.h"
#include "settings/LineGrammar.h"

namespace dovrel {

namespace {

constexpr char kIndexOutOfBounds[] = "Index out of bounds!'";

CPPException* newMissingKeyFailure(const std::string& key, const char* typeName) {
    const std::string message = "Could not find key: '" + key + "' for " + typeName + " value!";
    return new CPPException(message.c_str());
}

void appendValue(std::string& output, const PropertyValue& value) {
    switch (value.type) {
        case PropertyType::kInteger:
            (output += kIntegerWord) += kTypeWordEnd;
            appendDecimal(output, value.intValue);
            break;
        case PropertyType::kString:
            (output += kStringWord) += kTypeWordEnd;
            output += value.stringValue;
            break;
        case PropertyType::kBinary:
            (output += kBinaryWord) += kTypeWordEnd;
            output += bytesToHexText(value.binaryValue);
            break;
        case PropertyType::kUnknown:
            break;
    }
}

}  // namespace

template <typename... Arguments>
void Properties::add(std::string_view key, Arguments&&... arguments) {
    // Saved texts come in the order of their keys, so most entries belong behind the last one.
    auto place = values_.end();
    if (!values_.empty() && !(std::prev(place)->first < key)) place = values_.lower_bound(key);
    if (place != values_.end() && place->first == key) return;
    values_.emplace_hint(place, std::piecewise_construct, std::forward_as_tuple(key),
                         std::forward_as_tuple(std::forward<Arguments>(arguments)...));
}

template <typename... Arguments>
void Properties::replace(const std::string& key, Arguments&&... arguments) {
    const auto old = values_.find(key);
    if (old == values_.end()) return;
    // Made before the old entry goes, so that a key never loses its value for want of memory.
    Values replacement;
    replacement.try_emplace(key, std::forward<Arguments>(arguments)...);
    values_.erase(old);
    values_.merge(replacement);
}

void Properties::addInt(const std::string& key, int32_t value) {
    add(key, value);
}

void Properties::addString(const std::string& key, const std::string& value) {
    add(key, std::string_view(value));
}

void Properties::addBinary(const std::string& key, const void* bytes, uint32_t length) {
    add(key, bytes, length);
}

void Properties::addBinary(const std::string& key, const CPPByteArray& value) {
    addBinary(key, value.data(), value.getSize());
}

void Properties::replaceInt(const std::string& key, int32_t value) {
    replace(key, value);
}

void Properties::replaceString(const std::string& key, const std::string& value) {
    replace(key, std::string_view(value));
}

void Properties::replaceBinary(const std::string& key, const void* bytes, uint32_t length) {
    replace(key, bytes, length);
}

void Properties::replaceBinary(const std::string& key, const CPPByteArray& value) {
    replaceBinary(key, value.data(), value.getSize());
}

bool Properties::remove(const std::string& key) {
    return values_.erase(key) != 0;
}

void Properties::clear() {
    values_.clear();
}

bool Properties::contains(const std::string& key) const {
    return find(key) != nullptr;
}

int32_t Properties::getInt(const std::string& key) const {
    return get(key, "integer").asInt();
}

bool Properties::getBool(const std::string& key) const {
    return get(key, "boolean").asInt() > 0;
}

std::string Properties::getString(const std::string& key) const {
    return get(key, "string").asString();
}

std::unique_ptr<CPPByteArray> Properties::getBinary(const std::string& key) const {
    return std::make_unique<CPPByteArray>(get(key, "binary").asBinary());
}

std::unique_ptr<CPPByteArray> Properties::getBinaryAt(int32_t index) const {
    return std::make_unique<CPPByteArray>(at(index)->second.asBinary());
}

std::string Properties::getKeyAt(int32_t index) const {
    return at(index)->first;
}

bool Properties::findInt(const std::string& key, int32_t& value) const {
    const PropertyValue* found = find(key);
    if (found != nullptr) value = found->asInt();
    return found != nullptr;
}

bool Properties::findString(const std::string& key, std::string& value) const {
    const PropertyValue* found = find(key);
    if (found != nullptr) value = found->asString();
    return found != nullptr;
}

bool Properties::findBinary(const std::string& key, CPPByteArray& value) const {
    const PropertyValue* found = find(key);
    if (found == nullptr) return false;
    const CPPByteArray bytes = found->asBinary();
    value.assign(bytes);
    if (value.getSize() != bytes.getSize()) throw std::bad_alloc();
    return true;
}

std::string Properties::toText(const PropertyValue& value) {
    std::string text;
    appendValue(text, value);
    return text;
}

std::string Properties::keyDigest(const std::string& text) {
    uint32_t sum = 0;
    uint32_t position = 0;
    for (const char c : text)
        sum += static_cast<uint8_t>(c) * ++position;
    return numberToText(sum, 16, 1);
}

void Properties::load(std::string& text, bool throughCursor) {
    std::string usedUp;
    if (!throughCursor) usedUp.swap(text);
    PropertiesStringObj cursor(throughCursor ? text : usedUp);

    clear();
    EntryReader reader(cursor, KeyLineRule::kOneSlash);
    for (EntryReader::Step step = reader.next(); step != EntryReader::Step::kEnd; step = reader.next()) {
        if (step == EntryReader::Step::kValue) addParsed(reader.key(), reader.type(), reader.value());
    }
}

void Properties::save(std::string& output) const {
    for (const auto& [key, value] : values_) {
        appendKeyLine(output, key);
        appendValue(output, value);
        output += kLineFeed;
    }
}

bool Properties::addParsed(std::string_view key, PropertyType type, std::string_view value) {
    switch (type) {
        case PropertyType::kInteger:
            add(key, leadingInteger(value));
            return true;
        case PropertyType::kString:
            add(key, value);
            return true;
        case PropertyType::kBinary: {
            const std::string bytes = bytesOfHexText(value);
            add(key, bytes.data(), bytes.size());
            return true;
        }
        case PropertyType::kUnknown:
            break;
    }
    return false;
}

Properties::File Properties::openForReading(const std::string& path) {
    File file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) throw new CPPException(("Could not open file for reading: " + path).c_str());
    return file;
}

const PropertyValue* Properties::find(const std::string& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? nullptr : &found->second;
}

const PropertyValue& Properties::get(const std::string& key, const char* typeName) const {
    const PropertyValue* found = find(key);
    if (found == nullptr) throw newMissingKeyFailure(key, typeName);
    return *found;
}

Properties::Values::const_iterator Properties::at(int32_t index) const {
    auto entry = values_.begin();
    for (int32_t i = 0; i < index && entry != values_.end(); ++i)
        ++entry;
    if (entry == values_.end()) throw new CPPException(kIndexOutOfBounds);
    return entry;
}

}  // namespace dovrel
