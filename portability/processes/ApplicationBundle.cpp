#include "portability/processes/ApplicationBundle.h"

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFString.h>
#include <CoreServices/MacErrors.h>

#include <array>

#include "portability/corefoundation/PropertyList.h"
#include "portability/posix/Paths.h"

namespace portability {
namespace {

constexpr OSType kNoSignature = '\?\?\?\?';
constexpr const char* kExtension = ".app";

// Owns a dictionary and releases it.
class Info {
  public:
    explicit Info(const std::string& path) : dictionary_(copyDictionary(path)) {}
    ~Info() {
        if (dictionary_ != nullptr) {
            CFRelease(dictionary_);
        }
    }
    Info(const Info&) = delete;
    Info& operator=(const Info&) = delete;

    bool isThere() const { return dictionary_ != nullptr; }

    /// Returns the text of the key. Returns the empty string if there is none or `encoding` cannot
    /// express it.
    std::string text(CFStringRef key, CFStringEncoding encoding) const {
        const CFStringRef value = stringValue(dictionary_, key);
        std::array<char, 1024> bytes;
        const bool isGiven =
            value != nullptr &&
            CFStringGetCString(value, bytes.data(), static_cast<CFIndex>(bytes.size()), encoding);
        return isGiven ? std::string(bytes.data()) : std::string();
    }

  private:
    const CFDictionaryRef dictionary_;
};

bool isApplication(const std::string& path, const Info& info) {
    const std::string type = info.text(CFSTR("CFBundlePackageType"), kCFStringEncodingMacRoman);
    if (!type.empty()) {
        return type == "APPL";
    }
    return !applicationName(path).empty();
}

// Returns the path of the executable that the Info.plist names. Returns the empty string if there is none.
// The name must be a file name, so that it cannot refer to a file outside the bundle.
std::string statedExecutable(const std::string& bundle, const Info& info) {
    const std::string name = info.text(kCFBundleExecutableKey, kCFStringEncodingUTF8);
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
        return std::string();
    }
    return bundle + "/Contents/MacOS/" + name;
}

std::string executableIn(const std::string& bundle, const Info& info) {
    const std::string file = canonicalPath(statedExecutable(bundle, info));
    return isFolder(file) ? std::string() : file;
}

OSType signatureIn(const Info& info) {
    const std::string text = info.text(CFSTR("CFBundleSignature"), kCFStringEncodingMacRoman);
    if (text.size() != sizeof(OSType)) {
        return 0;
    }
    OSType signature = 0;
    for (const char character : text) {
        signature = (signature << 8) | static_cast<unsigned char>(character);
    }
    return signature == kNoSignature ? 0 : signature;
}

}  // namespace

OSStatus readApplication(const std::string& path, ApplicationBundle& application) {
    const std::string bundle = canonicalPath(path);
    if (bundle.empty()) {
        return fnfErr;
    }
    const Info info(bundle + "/Contents/Info.plist");
    if (!info.isThere() || !isApplication(bundle, info)) {
        return kLSNotAnApplicationErr;
    }
    application.path = bundle;
    application.signature = signatureIn(info);
    application.executable = executableIn(bundle, info);
    return application.executable.empty() ? static_cast<OSStatus>(kLSNoExecutableErr) : OSStatus{noErr};
}

bool isExecutableOf(const std::string& bundle, const std::string& program) {
    std::string executable = statedExecutable(bundle, Info(bundle + "/Contents/Info.plist"));
    // A running application must be recognised even if its Info.plist is damaged.
    if (executable.empty()) executable = bundle + "/Contents/MacOS/" + applicationName(bundle);
    return program == executable || program == canonicalPath(executable);
}

OSType readSignature(const std::string& bundle) {
    return signatureIn(Info(bundle + "/Contents/Info.plist"));
}

std::string applicationName(const std::string& path) {
    const std::string name = getLastComponent(path);
    const std::size_t dot = name.rfind('.');
    const bool isApplication = dot != std::string::npos && dot > 0 && name.substr(dot) == kExtension;
    return isApplication ? name.substr(0, dot) : std::string();
}

}  // namespace portability
