#include "tools/properties/EntryText.h"

#include "platform/text/TextConversions.h"
#include "platform/trace/TraceText.h"
#include "settings/LineGrammar.h"

namespace dovrel::tools {

namespace {

std::string valueText(const TextEntry& entry) {
    if (entry.type == PropertyType::kString) return '"' + traceOneLineText(std::string(entry.value)) + '"';
    if (entry.type != PropertyType::kBinary) return bareValue(entry);
    const std::string bytes = decodeHexText(entry.value);
    return traceDataText(bytes.data(), static_cast<uint32_t>(bytes.size()));
}

}  // namespace

std::string entryText(const TextEntry& entry) {
    return traceOneLineText(std::string(entry.key)) + " = " + valueText(entry);
}

std::string bareValue(const TextEntry& entry) {
    switch (entry.type) {
        case PropertyType::kInteger:
            return std::to_string(leadingInteger(entry.value));
        case PropertyType::kBinary: {
            const std::string bytes = decodeHexText(entry.value);
            return bytesToHexText(bytes.data(), static_cast<uint32_t>(bytes.size()));
        }
        case PropertyType::kString:
        case PropertyType::kUnknown:
            break;
    }
    return std::string(entry.value);
}

}  // namespace dovrel::tools
