// Core Foundation references in tests.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <array>
#include <string>

/// Owns a reference, which may be null, and releases it.
template <typename Reference>
class Held {
  public:
    explicit Held(Reference reference) : reference_(reference) {}
    ~Held() {
        if (reference_ != nullptr) {
            CFRelease(reference_);
        }
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    Reference get() const { return reference_; }

  private:
    const Reference reference_;
};

/// Returns a string made from UTF-8; the caller releases it.
inline CFStringRef newString(const std::string& utf8) {
    return CFStringCreateWithCString(kCFAllocatorDefault, utf8.c_str(), kCFStringEncodingUTF8);
}

/// Returns the string in UTF-8; "(none)" for a null reference.
inline std::string toText(CFTypeRef string) {
    if (string == nullptr) {
        return "(none)";
    }
    std::array<char, 4096> bytes;
    const bool isText = CFStringGetCString(static_cast<CFStringRef>(string), bytes.data(),
                                           static_cast<CFIndex>(bytes.size()), kCFStringEncodingUTF8);
    return isText ? std::string(bytes.data()) : std::string("(not expressible)");
}

/// Returns the URL of a path; the caller releases it.
inline CFURLRef newFileURL(const std::string& path, bool isDirectory = false) {
    const Held<CFStringRef> text(newString(path));
    return CFURLCreateWithFileSystemPath(kCFAllocatorDefault, text.get(), kCFURLPOSIXPathStyle, isDirectory);
}

/// Returns the path of a URL; "(none)" for a null reference or a URL without a path.
inline std::string toPath(CFURLRef url) {
    std::array<UInt8, 4096> path;
    const bool hasPath = url != nullptr && CFURLGetFileSystemRepresentation(
                                               url, true, path.data(), static_cast<CFIndex>(path.size()));
    return hasPath ? std::string(reinterpret_cast<const char*>(path.data())) : std::string("(none)");
}
