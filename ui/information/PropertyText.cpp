#include "ui/information/PropertyText.h"

#include <cstdio>

#include "platform/AutoreleasePool.h"
#include "platform/files/OpenFile.h"
#include "platform/files/Places.h"
#include "platform/text/CFStrings.h"
#include "ui/information/PropertyListFormat.h"

namespace dovrel {

namespace {

constexpr size_t kPieceSize = 4096;

/// Returns the content of the file, or nothing if it cannot be opened. After a read error (for example, if
/// the path names a folder) the content is cut; then it is not a valid property list.
std::optional<std::string> readContent(const std::string& path) {
    const OpenFile file(std::fopen(path.c_str(), "rb"));
    if (!file) return std::nullopt;
    std::string content;
    char piece[kPieceSize];
    while (const size_t count = std::fread(piece, 1, sizeof piece, file.get()))
        content.append(piece, count);
    return content;
}

/// Only Foundation can format "%@", so the value is passed to Foundation as an XML property list. Strings do
/// not take this path, so a host that shows no alert and makes no report never uses Foundation.
std::optional<std::string> formattedValue(CFPropertyListRef value) {
    const CFObject<CFDataRef> list(
        CFPropertyListCreateData(kCFAllocatorDefault, value, kCFPropertyListXMLFormat_v1_0, 0, nullptr));
    if (!list) return std::nullopt;
    const UInt8* const bytes = CFDataGetBytePtr(list.get());
    return formatPropertyList(std::string(bytes, bytes + CFDataGetLength(list.get())));
}

}  // namespace

std::optional<std::string> textFromValue(CFTypeRef value) {
    if (value == nullptr) return std::nullopt;
    const bool isString = CFGetTypeID(value) == CFStringGetTypeID();
    return isString ? utf8Text(static_cast<CFStringRef>(value)) : formattedValue(value);
}

std::optional<std::string> textInPropertyList(const std::string& path, const std::string& key) {
    const AutoreleasePool pool;
    const std::optional<std::string> content = readContent(fileSystemPath(path));
    if (!content) return std::nullopt;
    const CFObject<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                                reinterpret_cast<const UInt8*>(content->data()),
                                                static_cast<CFIndex>(content->size())));
    if (!data) return std::nullopt;
    const CFObject<CFPropertyListRef> list(CFPropertyListCreateWithData(
        kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr));
    const CFObject<CFStringRef> name = newCFString(key.c_str());
    if (!list || !name || CFGetTypeID(list.get()) != CFDictionaryGetTypeID()) return std::nullopt;
    return textFromValue(CFDictionaryGetValue(static_cast<CFDictionaryRef>(list.get()), name.get()));
}

}  // namespace dovrel
