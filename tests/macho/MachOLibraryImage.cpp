#include "tests/macho/MachOLibraryImage.h"

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFURL.h>
#include <sys/stat.h>

#include <map>
#include <stdexcept>

#include "macho/imports/ImportTable.h"
#include "tests/support/LibraryImage.h"

namespace dovrel::test {

namespace {

using macho::LoadedBundle;

// On macOS, Core Foundation knows a bundle as soon as its executable is loaded.
void introduce(const std::string& bundle) {
    const CFURLRef url = CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bundle.data()),
        static_cast<CFIndex>(bundle.size()), true);
    CFBundleCreate(kCFAllocatorDefault, url);  // never released, because the process uses it until its end
    CFRelease(url);
}

}  // namespace

LoadedBundle& loadedExecutable(const std::string& executable) {
    static std::map<std::pair<dev_t, ino_t>, LoadedBundle*> all;
    struct stat file = {};
    if (stat(executable.c_str(), &file) != 0) throw std::runtime_error("there is no " + executable);
    LoadedBundle*& known = all[std::pair(file.st_dev, file.st_ino)];
    if (known != nullptr) return *known;
    introduce(executable.substr(0, executable.rfind("/Contents/")));
    try {
        known = &LoadedBundle::load(executable, macho::reviewedImports());
    } catch (const macho::FormatError& error) {
        throw std::runtime_error(executable + ": " + error.what());
    }
    return *known;
}

LibraryImage::LibraryImage(const std::string& executable) : handle_(&loadedExecutable(executable)) {}

LibraryImage::~LibraryImage() = default;

void* LibraryImage::function(const char* name) const {
    return static_cast<LoadedBundle*>(handle_)->function(name);
}

}  // namespace dovrel::test
