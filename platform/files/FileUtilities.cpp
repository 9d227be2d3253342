#include "platform/files/FileUtilities.h"

#include <CoreServices/CoreServices.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

#include "client/exceptions/CPPException.h"
#include "platform/files/FileReplacement.h"
#include "platform/files/FileURL.h"
#include "platform/files/OpenFile.h"
#include "platform/text/CFStrings.h"
#include "platform/text/TextConversions.h"

namespace dovrel {

namespace {

constexpr UInt16 kAllPermissions = 0777;

bool isFolder(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<off_t> plainFileSize(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return status.st_size;
}

bool haveSameContent(const std::string& path, const std::string& otherPath) {
    const std::optional<off_t> size = plainFileSize(path);
    if (!size || plainFileSize(otherPath) != size) return false;
    const OpenFile file(std::fopen(path.c_str(), "rb"));
    const OpenFile other(std::fopen(otherPath.c_str(), "rb"));
    if (!file || !other) return false;
    std::vector<char> bytes(64 * 1024);
    std::vector<char> otherBytes(bytes.size());
    for (;;) {
        const size_t count = std::fread(bytes.data(), 1, bytes.size(), file.get());
        if (std::fread(otherBytes.data(), 1, bytes.size(), other.get()) != count) return false;
        if (count == 0) return true;
        if (!std::equal(bytes.data(), bytes.data() + count, otherBytes.data())) return false;
    }
}

// Returns -1 if the file cannot be sought (a pipe).
long seekableLength(std::FILE* file) {
    if (std::fseek(file, 0, SEEK_END) != 0) return -1;
    const long length = std::ftell(file);
    return std::fseek(file, 0, SEEK_SET) == 0 ? length : -1;
}

// Puts the path into single quotes for a shell. A single quote in it becomes: closing quote, escaped quote,
// opening quote.
std::string shellQuoted(const std::string& path) {
    return "'" + replaceAll(path, "'", "'\\''") + "'";
}

bool makeReference(const std::string& path, CFStringEncoding encoding, FSRef& reference) {
    const CFObject<CFURLRef> url = fileURL(path, encoding);
    return url && CFURLGetFSRef(url.get(), &reference);
}

bool grantAllPermissions(const FSRef& reference) {
    FSCatalogInfo info;
    if (FSGetCatalogInfo(&reference, kFSCatInfoPermissions, &info, nullptr, nullptr, nullptr) != noErr)
        return true;
    // The field has a different type in 32-bit headers; a pointer to it can be converted in both.
    auto* const permissions = reinterpret_cast<FSPermissionInfo*>(&info.permissions);
    permissions->mode = static_cast<UInt16>(permissions->mode | kAllPermissions);
    return FSSetCatalogInfo(&reference, kFSCatInfoPermissions, &info) == noErr;
}

// Splits a path into its last component and the folder that contains it.
struct SplitPath {
    explicit SplitPath(std::string path) {
        while (path.size() > 1 && path.back() == '/')
            path.pop_back();
        const size_t slash = path.rfind('/');
        if (slash != std::string::npos) parent = slash == 0 ? "/" : path.substr(0, slash);
        name = slash == std::string::npos ? path : path.substr(slash + 1);
    }

    // Returns whether the last component can be an entry of its parent folder. It cannot if the path is empty
    // or "/", or if it ends in "." or "..".
    bool hasEntry() const { return !name.empty() && name != "." && name != ".."; }

    std::string parent = ".";
    std::string name;
};

// Returns a file name as the File Manager takes it: there, a slash in a name stands
// for the colon of the path.
std::vector<UniChar> fileManagerName(const std::string& utf8) {
    const CFObject<CFStringRef> text = newCFString(utf8.c_str());
    if (!text) return {};
    const CFIndex length = CFStringGetLength(text.get());
    std::vector<UniChar> characters(static_cast<size_t>(length));
    CFStringGetCharacters(text.get(), CFRangeMake(0, length), characters.data());
    std::replace(characters.begin(), characters.end(), UniChar{':'}, UniChar{'/'});
    return characters;
}

}  // namespace

std::string readWholeFile(const std::string& path, bool normaliseLineEnds) {
    const OpenFile file = openForReading(path);
    // A file that cannot be sought cannot be read as a whole.
    const long length = seekableLength(file.get());
    if (length < 0) throw newOpeningFailure(path);

    std::string text(static_cast<size_t>(length), '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    text.resize(std::min(text.size(), text.find('\0')));
    return normaliseLineEnds ? withLineFeedsOnly(text) : text;
}

bool writeWholeFile(const std::string& path, const std::string& text) {
    try {
        if (!replaceFileContent(path, text)) return false;
        grantAllPermissions(path);
        return true;
    } catch (CPPException* caught) {
        std::unique_ptr<CPPException> failure(caught);
        return false;
    } catch (...) {
        return false;
    }
}

bool copyFileWithShell(const char* source, const char* destination, bool onlyIfMissing) {
    if (source == nullptr || destination == nullptr) return false;
    if (onlyIfMissing && fileExists(destination)) return false;
    const std::string command = "cp -f " + shellQuoted(source) + " " + shellQuoted(destination);
    const int status = std::system(command.c_str());
    const std::string copy =
        isFolder(destination) ? std::string(destination) + "/" + SplitPath(source).name : destination;
    // `std::system` returns -1 if the host ignores SIGCHLD or waits for all its children. Then the contents
    // are compared to find out whether the copy succeeded.
    if (status == 0 || (status == -1 && haveSameContent(source, copy))) grantAllPermissions(copy);
    return true;
}

bool renameIfTargetMissing(const std::string& source, const std::string& target) {
    if (!fileExists(source) || fileExists(target)) return false;
    return std::rename(source.c_str(), target.c_str()) == 0;
}

bool removeFile(const std::string& path) {
    return std::remove(path.c_str()) == 0;
}

bool deleteFileObject(const std::string& path) {
    FSRef reference;
    return makeReference(path, kCFStringEncodingMacRoman, reference) && FSDeleteObject(&reference) == noErr;
}

bool fileExists(const std::string& path) {
    return OpenFile(std::fopen(path.c_str(), "rb")) != nullptr;
}

bool pathExists(const std::string& path) {
    FSRef reference;
    return makeReference(path, kCFStringEncodingMacRoman, reference);
}

bool createFolder(const std::string& path) {
    const SplitPath split(path);
    FSRef parent;
    if (!split.hasEntry()) return makeReference(path, kCFStringEncodingUTF8, parent);
    const std::vector<UniChar> name = fileManagerName(split.name);
    if (name.empty() || !makeReference(split.parent, kCFStringEncodingUTF8, parent)) return false;
    FSRef created;
    const OSErr result = FSCreateDirectoryUnicode(&parent, name.size(), name.data(), kFSCatInfoNone, nullptr,
                                                  &created, nullptr, nullptr);
    if (result == noErr) grantAllPermissions(created);
    return result == noErr || result == dupFNErr;
}

bool grantAllPermissions(const std::string& path) {
    FSRef reference;
    return !makeReference(path, kCFStringEncodingMacRoman, reference) || grantAllPermissions(reference);
}

}  // namespace dovrel
