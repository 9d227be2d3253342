#include "server/Recording.h"

#include <charconv>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

#include "InterProcessCommunication/RecordingFormat.h"
#include "client/exceptions/CPPException.h"
#include "platform/files/OpenFile.h"
#include "settings/ConfigFileSystem.h"

namespace merrowd {

using dovrel::ConfigFileSystem;
using dovrel::CPPException;
using dovrel::Properties;
namespace format = dovrel::recording;

namespace {

bool hasNumber(const Properties& section, const char* key, int32_t expected) {
    int32_t number = 0;
    return section.findInt(key, number) && number == expected;
}

// Reads "OFFSET LENGTH". Returns false if the text is anything else.
bool parsePlace(const std::string& text, RecordedBytes& place) {
    const char* const end = text.data() + text.size();
    const auto offset = std::from_chars(text.data(), end, place.offset);
    if (offset.ec != std::errc() || offset.ptr == end || *offset.ptr != ' ') return false;
    const auto length = std::from_chars(offset.ptr + 1, end, place.length);
    return length.ec == std::errc() && length.ptr == end && place.length != 0;
}

}  // namespace

Recording::Recording(const std::string& path, std::vector<std::string>& problems) : path_(path) {
    try {
        addSections(ConfigFileSystem::readText(path), problems);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        problems.emplace_back(failure->getMessage());
    }
}

Recording::Recording(std::string path, const std::string& text, std::vector<std::string>& problems)
    : path_(std::move(path)) {
    addSections(text, problems);
}

void Recording::addSections(const std::string& text, std::vector<std::string>& problems) {
    size_t number = 0;
    for (const Properties& section : ConfigFileSystem::readSections(text, format::kSectionKey)) {
        if (!section.contains(format::kSectionKey)) continue;
        ++number;
        RecordedExchange exchange;
        exchange.failed = section.contains(format::kFailureKey);
        const bool isReadable =
            hasNumber(section, format::kFormatKey, format::kFormatVersion) &&
            hasNumber(section, format::kEndKey, format::kEndValue) &&
            findBytes(section, format::kRequestKey, format::kRequestPlaceKey, exchange.request) &&
            (exchange.failed ||
             findBytes(section, format::kReplyKey, format::kReplyPlaceKey, exchange.reply));
        if (isReadable) {
            exchanges_.push_back(std::move(exchange));
        } else {
            problems.push_back(path_ + ": exchange " + std::to_string(number) +
                               " is incomplete or has another format");
        }
    }
    if (number == 0) problems.push_back(path_ + ": there is no exchange in this file");
}

bool Recording::findBytes(const Properties& section, const char* key, const char* placeKey,
                          RecordedBytes& found) const {
    std::string place;
    if (!section.findString(placeKey, place)) return section.findBinary(key, found.bytes);
    if (!parsePlace(place, found)) return false;
    std::ifstream file(format::payloadPath(path_), std::ios::binary | std::ios::ate);
    if (!file) return false;
    const auto size = static_cast<uint64_t>(file.tellg());
    return found.offset <= size && found.length <= size - found.offset;
}

CPPByteArray Recording::read(const RecordedBytes& recorded) const {
    CPPByteArray bytes;
    if (recorded.length == 0) {
        bytes.set(recorded.bytes.data(), recorded.bytes.getSize());
        return bytes;
    }
    const std::string path = format::payloadPath(path_);
    std::string buffer(recorded.length, '\0');
    std::ifstream file(path, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(recorded.offset));
    if (!file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())))
        throw dovrel::newOpeningFailure(path);
    bytes.setOrThrow(buffer.data(), recorded.length);
    return bytes;
}

}  // namespace merrowd
