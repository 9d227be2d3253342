#include "settings/Properties.h"

#include <algorithm>

#include "client/exceptions/CPPException.h"
#include "platform/text/TextConversions.h"
#include "settings/EntryReader.h"
#include "settings/LineGrammar.h"

namespace dovrel {

namespace {

constexpr char kIndexOutOfBounds[] = "Index out of bounds!'";

CPPException* newMissingKeyFailure(const std::string& key, const char* typeName) {
    const std::string message = "Could not find key: '" + key + "' for " + typeName + " value!";
    return new CPPException(message.c_str());
}

template <typename Action>
void forEachEntry(PropertiesStringObj& cursor, Action action) {
    EntryReader reader(cursor, KeyLineRule::kOneSlash);
    for (EntryReader::Step step = reader.next(); step != EntryReader::Step::kEnd; step = reader.next()) {
        if (step == EntryReader::Step::kValue) action(reader);
    }
}

void appendValue(std::string& output, const PropertyValue& value) {
    if (value.type == PropertyType::kUnknown) return;
    (output += typeWord(value.type)) += kTypeWordEnd;
    if (value.type == PropertyType::kBinary) {
        output += bytesToHexText(value.binaryValue.data(), static_cast<uint32_t>(value.binaryValue.size()));
    } else {
        output += value.asString();
    }
}

}  // namespace

void Properties::addInt(const std::string& key, int32_t value) {
    add(key, PropertyValue::ofInt(value));
}

void Properties::addString(const std::string& key, const std::string& value) {
    add(key, PropertyValue::ofString(value));
}

void Properties::addBinary(const std::string& key, const void* bytes, uint32_t length) {
    add(key, PropertyValue::ofBinary(bytes, length));
}

void Properties::addBinary(const std::string& key, const CPPByteArray& value) {
    addBinary(key, value.data(), value.getSize());
}

void Properties::replaceInt(const std::string& key, int32_t value) {
    replace(key, PropertyValue::ofInt(value));
}

void Properties::replaceString(const std::string& key, const std::string& value) {
    replace(key, PropertyValue::ofString(value));
}

void Properties::replaceBinary(const std::string& key, const void* bytes, uint32_t length) {
    replace(key, PropertyValue::ofBinary(bytes, length));
}

void Properties::replaceBinary(const std::string& key, const CPPByteArray& value) {
    replaceBinary(key, value.data(), value.getSize());
}

bool Properties::remove(const std::string& key) {
    const auto found = entries_.find(std::string_view(key));
    if (found == entries_.end()) return false;
    entries_.erase(found);
    return true;
}

void Properties::clear() {
    entries_.clear();
    text_.reset();
}

bool Properties::contains(const std::string& key) const {
    return entries_.find(std::string_view(key)) != entries_.end();
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
    return std::make_unique<CPPByteArray>(at(index).value().asBinary());
}

std::string Properties::getKeyAt(int32_t index) const {
    return std::string(at(index).key());
}

bool Properties::findInt(const std::string& key, int32_t& value) const {
    PropertyValue found;
    if (!find(key, found)) return false;
    value = found.asInt();
    return true;
}

bool Properties::findString(const std::string& key, std::string& value) const {
    PropertyValue found;
    if (!find(key, found)) return false;
    value = found.asString();
    return true;
}

bool Properties::findBinary(const std::string& key, CPPByteArray& value) const {
    PropertyValue found;
    if (!find(key, found)) return false;
    const CPPByteArray bytes = found.asBinary();
    value.assign(bytes);
    value.requireSize(bytes.getSize());
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
    if (throughCursor) {
        PropertiesStringObj cursor(text);
        return load(cursor);
    }
    clear();
    text_ = std::make_unique<const std::string>(std::move(text));
    text.clear();
    PropertiesStringObj cursor(*text_);
    forEachEntry(
        cursor, [this](const EntryReader& entry) { addReferring(entry.key(), entry.type(), entry.value()); });
}

void Properties::load(PropertiesStringObj& cursor) {
    clear();
    forEachEntry(cursor,
                 [this](const EntryReader& entry) { addParsed(entry.key(), entry.type(), entry.value()); });
}

void Properties::save(std::string& output) const {
    // An estimate of the size is enough to avoid most reallocations. The exact size would need a second pass
    // over all entries.
    constexpr size_t kUsualEntryLength = 100;
    const size_t guess = entries_.size() * kUsualEntryLength;
    output.reserve(output.size() + std::max(guess, text_ != nullptr ? text_->size() : 0));
    // Entries that are contiguous in the loaded text are copied in one piece.
    std::string_view contiguousText;
    for (const PropertyEntry& entry : entries_) {
        const std::string_view form = entry.savedForm();
        if (!form.empty() && form.data() == contiguousText.data() + contiguousText.size()) {
            contiguousText = std::string_view(contiguousText.data(), contiguousText.size() + form.size());
            continue;
        }
        output += contiguousText;
        contiguousText = form;
        if (form.empty()) {
            appendKeyLine(output, entry.key());
            appendValue(output, entry.value());
            output += kLineFeed;
        }
    }
    output += contiguousText;
}

bool Properties::addParsed(std::string_view key, PropertyType type, std::string_view value) {
    switch (type) {
        case PropertyType::kInteger:
            add(key, PropertyValue::ofInt(leadingInteger(value)));
            return true;
        case PropertyType::kString:
            add(key, PropertyValue::ofString(value));
            return true;
        case PropertyType::kBinary: {
            const std::string bytes = decodeHexText(value);
            add(key, PropertyValue::ofBinary(bytes.data(), bytes.size()));
            return true;
        }
        case PropertyType::kUnknown:
            break;
    }
    return false;
}

OpenFile Properties::openForReading(const std::string& path) {
    return dovrel::openForReading(path);
}

void Properties::add(std::string_view key, const PropertyValue& value) {
    // Saved texts are sorted by key, so most new entries belong at the end. Duplicates are
    // constructed and then discarded.
    entries_.emplace_hint(entries_.end(), key, value);
}

void Properties::addReferring(std::string_view key, PropertyType type, std::string_view value) {
    const bool isAsInText = type == PropertyType::kInteger || type == PropertyType::kString;
    if (isAsInText && PropertyEntry::canReferTo(key, value)) {
        entries_.emplace_hint(entries_.end(), *text_, key, type, value);
    } else {
        addParsed(key, type, value);
    }
}

void Properties::replace(std::string_view key, const PropertyValue& value) {
    const auto old = entries_.find(key);
    if (old == entries_.end()) return;
    // The new entry is allocated before the old one is erased, so an allocation failure
    // does not lose the old value.
    Entries replacement;
    replacement.emplace(key, value);
    entries_.erase(old);
    entries_.merge(replacement);
}

bool Properties::find(std::string_view key, PropertyValue& value) const {
    const auto found = entries_.find(key);
    if (found == entries_.end()) return false;
    value = found->value();
    return true;
}

PropertyValue Properties::get(const std::string& key, const char* typeName) const {
    PropertyValue value;
    if (!find(key, value)) throw newMissingKeyFailure(key, typeName);
    return value;
}

const PropertyEntry& Properties::at(int32_t index) const {
    auto entry = entries_.begin();
    for (int32_t i = 0; i < index && entry != entries_.end(); ++i)
        ++entry;
    if (entry == entries_.end()) throw new CPPException(kIndexOutOfBounds);
    return *entry;
}

}  // namespace dovrel
