#include <CoreFoundation/CFURL.h>

#include <limits.h>
#include <unistd.h>
#include <algorithm>
#include <array>
#include <cstring>

#include "portability/corefoundation/FileURL.h"
#include "portability/corefoundation/Object.h"
#include "portability/posix/SystemRoot.h"

using portability::toObject;

namespace {

// The range of the path in a URL's text.
struct PathRange {
    std::size_t begin;
    std::size_t end;
};

PathRange pathRange(const std::string& url) {
    const std::size_t schemeEnd = url.find_first_of(":/?#");
    std::size_t begin = schemeEnd != std::string::npos && url[schemeEnd] == ':' ? schemeEnd + 1 : 0;
    if (url.compare(begin, 2, "//") == 0) {
        begin = std::min(url.find_first_of("/?#", begin + 2), url.size());
    }
    return {begin, std::min(url.find_first_of("?#", begin), url.size())};
}

bool hasWholeEscapes(const std::string& text) {
    for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at + 1)) {
        const std::string digits = text.substr(at + 1, 2);
        if (digits.size() != 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
            return false;
        }
    }
    return true;
}

std::string completePath(const std::string& path) {
    if (path.empty() || path.front() == '/') {
        return path;
    }
    std::array<char, PATH_MAX> folder;
    return getcwd(folder.data(), folder.size()) == nullptr ? std::string()
                                                           : std::string(folder.data()) + '/' + path;
}

CFURLRef createURLOfPlatformPath(const std::string& path, bool isDirectory) {
    return portability::createFileURL(portability::inSystemRoot(completePath(path)), isDirectory);
}

void stripSlashes(std::string& path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
}

std::string pathInText(const std::string& url) {
    const PathRange range = pathRange(url);
    std::string path;
    if (!portability::unescapePath(url.substr(range.begin, range.end - range.begin), path)) {
        return std::string();
    }
    stripSlashes(path);
    return portability::inSystemRoot(path);
}

}  // namespace

namespace portability {

std::string escapedPath(const std::string& path) {
    constexpr std::string_view kHexadecimal = "0123456789ABCDEF";
    // ';' is legal in a path but is escaped, because other readers of URLs treat it as the start
    // of parameters.
    constexpr std::string_view kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/!$&'()*+,=:@";
    std::string escaped;
    for (const char character : path) {
        if (kPlain.find(character) != std::string_view::npos) {
            escaped += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        escaped += {'%', kHexadecimal[byte >> 4], kHexadecimal[byte & 0xF]};
    }
    return escaped;
}

bool unescapePath(const std::string& text, std::string& path) {
    path.clear();
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            path += text[index];
            continue;
        }
        const std::string digits = text.substr(index + 1, 2);
        if (digits.size() != 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos ||
            digits == "00") {
            return false;
        }
        path += static_cast<char>(std::stoi(digits, nullptr, 16));
        index += 2;
    }
    return true;
}

CFURLRef createFileURL(const std::string& path, bool isDirectory) {
    if (path.empty()) {
        return nullptr;
    }
    std::string plain = path;
    stripSlashes(plain);
    if (isDirectory && plain != "/") {
        plain += '/';
    }
    return new __CFURL("file://" + escapedPath(plain));
}

std::string toPath(CFURLRef url) {
    return pathInText(toText(url));
}

bool isFileURL(CFURLRef url) {
    return toText(url).rfind("file:", 0) == 0;
}

std::string toText(CFURLRef url) {
    return static_cast<const __CFURL&>(toObject(url)).text;
}

}  // namespace portability

CFTypeID CFURLGetTypeID() {
    return portability::kURLKind;
}

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef URLString, CFURLRef /*baseURL*/) {
    constexpr std::string_view kAllowed =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!*'();:@&=+$,/?#[]%";
    const std::string text = static_cast<const __CFString&>(toObject(URLString)).utf8();
    const bool isURL = !text.empty() && text.find_first_not_of(kAllowed) == std::string::npos;
    return isURL && hasWholeEscapes(text) ? new __CFURL(text) : nullptr;
}

CFStringRef CFURLGetString(CFURLRef anURL) {
    return static_cast<CFStringRef>(static_cast<const __CFURL&>(toObject(anURL)).string.get());
}

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef, CFStringRef filePath, CFURLPathStyle pathStyle,
                                       Boolean isDirectory) {
    if (pathStyle != kCFURLPOSIXPathStyle) {
        return nullptr;
    }
    return createURLOfPlatformPath(static_cast<const __CFString&>(toObject(filePath)).utf8(), isDirectory);
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* buffer, CFIndex bufLen,
                                                 Boolean isDirectory) {
    if (buffer == nullptr || bufLen <= 0) {
        return nullptr;
    }
    return createURLOfPlatformPath(std::string(buffer, buffer + bufLen), isDirectory);
}

CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef pathComponent,
                                               Boolean isDirectory) {
    std::string text = portability::toText(url);
    const PathRange range = pathRange(text);
    if (range.begin == range.end || text[range.begin] != '/') {
        return nullptr;
    }
    std::string component =
        portability::escapedPath(static_cast<const __CFString&>(toObject(pathComponent)).utf8());
    if (text[range.end - 1] != '/') {
        component.insert(0, "/");
    }
    if (isDirectory && component.back() != '/') {
        component += '/';
    }
    return new __CFURL(text.insert(range.end, component));
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean /*resolveAgainstBase: no URL has a base*/,
                                         UInt8* buffer, CFIndex maxBufLen) {
    const std::string path = portability::toPath(url);
    if (path.empty() || maxBufLen < 0 || path.size() >= static_cast<std::size_t>(maxBufLen)) {
        return false;
    }
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return true;
}
