// Fuzz target for the property lists of bundles. A list that the reader accepts is written, read again, and
// must then have the same values. A file with the same bytes is also read as the property list of a bundle.

#include <CoreFoundation/CoreFoundation.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "FuzzTarget.h"
#include "portability/corefoundation/PropertyList.h"
#include "portability/corefoundation/XmlPropertyList.h"

namespace {

using portability::PropertyListNode;
using Kind = PropertyListNode::Kind;

constexpr size_t kDeepest = 128;

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        // A carriage return must be written as a character reference; otherwise it is read as a line feed.
        if (c == '<' || c == '>' || c == '&' || c == '\r') {
            result += "&#" + std::to_string(static_cast<int>(c)) + ";";
        } else {
            result += c;
        }
    }
    return result;
}

std::string element(const char* name, const std::string& content) {
    return "<" + std::string(name) + ">" + content + "</" + name + ">";
}

std::string written(const PropertyListNode& node, size_t depth) {
    FUZZ_CHECK(depth <= kDeepest);
    switch (node.kind) {
        case Kind::string:
            return element("string", escaped(node.text));
        case Kind::integer:
            return element("integer", escaped(node.text));
        case Kind::real:
            return element("real", escaped(node.text));
        case Kind::boolean:
            FUZZ_CHECK(node.text == "true" || node.text == "false");
            return "<" + node.text + "/>";
        case Kind::date:
            return element("date", escaped(node.text));
        case Kind::data:
            return element("data", escaped(node.text));
        case Kind::array:
        case Kind::dictionary:
            break;
    }
    const bool isArray = node.kind == Kind::array;
    std::string content;
    for (const auto& [key, value] : node.members) {
        FUZZ_CHECK(!isArray || key.empty());
        if (!isArray) content += element("key", escaped(key));
        content += written(value, depth + 1);
    }
    return element(isArray ? "array" : "dict", content);
}

bool isSame(const PropertyListNode& left, const PropertyListNode& right) {
    if (left.kind != right.kind || left.text != right.text || left.members.size() != right.members.size())
        return false;
    for (size_t i = 0; i < left.members.size(); ++i) {
        if (left.members[i].first != right.members[i].first) return false;
        if (!isSame(left.members[i].second, right.members[i].second)) return false;
    }
    return true;
}

/// A file in memory with these bytes. It exists as long as the object.
class MemoryFile {
  public:
    explicit MemoryFile(std::string_view content) : descriptor_(memfd_create("Info.plist", MFD_CLOEXEC)) {
        FUZZ_CHECK(descriptor_ >= 0);
        FUZZ_CHECK(write(descriptor_, content.data(), content.size()) ==
                   static_cast<ssize_t>(content.size()));
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(descriptor_); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

  private:
    const int descriptor_;
};

void ask(const std::string& path) {
    const CFDictionaryRef info = portability::copyDictionary(path);
    if (info == nullptr) return;
    FUZZ_CHECK(CFGetTypeID(info) == CFDictionaryGetTypeID());
    for (const CFStringRef key : {kCFBundleExecutableKey, kCFBundleIdentifierKey, kCFBundleVersionKey}) {
        const CFStringRef value = portability::stringValue(info, key);
        char text[64];
        if (value != nullptr) CFStringGetCString(value, text, sizeof text, kCFStringEncodingUTF8);
    }
    CFRelease(info);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    if (const auto node = portability::readXmlPropertyList(document)) {
        const auto again = portability::readXmlPropertyList("<plist>" + written(*node, 1) + "</plist>");
        FUZZ_CHECK(again && isSame(*node, *again));
    }
    // Only XML lists are also read from a file.
    if (portability::isXmlPropertyList(document)) ask(MemoryFile(document).path());
    return 0;
}
