#include "foundation/FoundationObject.h"

#include <CoreFoundation/CFURL.h>
#include <CoreServices/Files.h>

#include <limits.h>
#include <unistd.h>
#include <array>
#include <cstring>

#include "SystemRoot.h"
#include "foundation/FileURL.h"

using portability::AutoreleasePool;
using portability::objectOf;
using portability::utf8Of;

namespace {

// Where the path stands in a URL's text.
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

// Foundation raises an exception at a text that is no URL.
NSURL* newURL(NSString* text) {
    @try {
        return [[NSURL alloc] initWithString:text];
    } @catch (...) {
        return nil;
    }
}

CFURLRef createURL(const std::string& text) {
    const AutoreleasePool pool;
    NSString* string = portability::newString(std::string_view(text));
    NSURL* url = string == nil ? nil : newURL(string);
    [string release];
    return (CFURLRef)url;
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
    // ';' may stand in a path, but Foundation takes it for the start of parameters.
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
    return createURL("file://" + escapedPath(plain));
}

std::string pathOf(CFURLRef url) { return pathInText(textOf(url)); }

bool isFileURL(CFURLRef url) { return [objectOf<NSURL*>(url) isFileURL]; }

std::string textOf(CFURLRef url) {
    const AutoreleasePool pool;
    return utf8Of([objectOf<NSURL*>(url) absoluteString]);
}

}  // namespace portability

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef, CFStringRef filePath, CFURLPathStyle pathStyle,
                                       Boolean isDirectory) {
    if (pathStyle != kCFURLPOSIXPathStyle) {
        return nullptr;
    }
    return createURLOfPlatformPath(utf8Of(objectOf<NSString*>(filePath)), isDirectory);
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
    std::string text = portability::textOf(url);
    const PathRange range = pathRange(text);
    if (range.begin == range.end || text[range.begin] != '/') {
        return nullptr;
    }
    std::string component = portability::escapedPath(utf8Of(objectOf<NSString*>(pathComponent)));
    if (text[range.end - 1] != '/') {
        component.insert(0, "/");
    }
    if (isDirectory && component.back() != '/') {
        component += '/';
    }
    return createURL(text.insert(range.end, component));
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufLen) {
    const AutoreleasePool pool;
    NSURL* object = objectOf<NSURL*>(url);
    const std::string path =
        pathInText(utf8Of(resolveAgainstBase ? [object absoluteString] : [object relativeString]));
    if (path.empty() || maxBufLen < 0 || path.size() >= static_cast<std::size_t>(maxBufLen)) {
        return false;
    }
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return true;
}

Boolean CFURLGetFSRef(CFURLRef url, FSRef* fsRef) {
    if (!portability::isFileURL(url)) {
        return false;
    }
    const std::string path = portability::pathOf(url);
    return FSPathMakeRef((const UInt8*)path.c_str(), fsRef, nullptr) == noErr;
}

CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const FSRef* fsRef) {
    std::array<UInt8, PATH_MAX> path;
    FSCatalogInfo info;
    if (FSRefMakePath(fsRef, path.data(), static_cast<UInt32>(path.size())) != noErr ||
        FSGetCatalogInfo(fsRef, kFSCatInfoNodeFlags, &info, nullptr, nullptr, nullptr) != noErr) {
        return nullptr;
    }
    return CFURLCreateFromFileSystemRepresentation(
        allocator, path.data(), static_cast<CFIndex>(std::strlen((const char*)path.data())),
        (info.nodeFlags & kFSNodeIsDirectoryMask) != 0);
}
