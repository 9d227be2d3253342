// The imports from libc++.
#include "macho/imports/StandardLibrary.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "macho/format/ByteReader.h"
#include "macho/imports/MutexCalls.h"
#include "macho/imports/ReviewedLibraries.h"

namespace dovrel::macho {

namespace {

constexpr char kLibrary[] = "/usr/lib/libc++.1.dylib";

// Functions that use a stream. Stream positions have another size on macOS, so the streams of the two systems
// are not compatible. These functions are never called, because no exported function takes a stream.
constexpr const char* kOfStreams[] = {
    "__ZNSt3__113basic_istreamIcNS_11char_traitsIcEEE3getEv",
    "__ZNSt3__113basic_istreamIcNS_11char_traitsIcEEE5seekgExNS_8ios_base7seekdirE",
    "__ZNSt3__113basic_istreamIcNS_11char_traitsIcEEE5tellgEv", "__ZNSt3__18ios_base5clearEj"};

void streamNeverUsed() {
    std::fputs("the bundle uses a stream of this system\n", stderr);
    std::abort();
}

// Loads libc++. With RTLD_DEEPBIND it uses its own symbols first: exceptions and memory functions of this
// program's C++ library have the same names.
void* standardLibrary() {
    static void* const library = dlopen("libc++.so.1", RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
    if (library == nullptr) throw FormatError(dlerror());
    return library;
}

}  // namespace

void* standardLibrarySymbol(const std::string& name) {
    void* symbol = dlsym(standardLibrary(), name.c_str());
    // In 32-bit programs size_t is unsigned long on macOS and unsigned int on this system. This changes a
    // letter in mangled names ("m" or "j").
    std::string shorter = name;
    for (size_t at = name.size(); sizeof(void*) == 4 && symbol == nullptr && at-- > 0;) {
        if (name[at] != 'm') continue;
        shorter[at] = 'j';
        symbol = dlsym(standardLibrary(), shorter.c_str());
    }
    if (symbol == nullptr) throw FormatError("libc++ has no " + name);
    return symbol;
}

void addStandardLibrary(ImportTable& table) {
    table.add(kLibrary, "__ZNSt3__15mutex4lockEv", &platformMutexLock);
    table.add(kLibrary, "__ZNSt3__15mutex8try_lockEv", &platformMutexTryLock);
    table.add(kLibrary, "__ZNSt3__15mutex6unlockEv", &platformMutexUnlock);
    table.add(kLibrary, "__ZNSt3__15mutexD1Ev", &platformMutexDestroy);
    for (const char* const name : kOfStreams)
        table.add(kLibrary, name, &streamNeverUsed);

    std::ifstream list(MACHO_STANDARD_LIBRARY_IMPORTS);
    if (!list) throw FormatError("the list of imports from libc++ cannot be read");
    for (std::string line; std::getline(list, line);) {
        if (line.empty() || line.front() == '#') continue;
        table.add(kLibrary, line, standardLibrarySymbol(line.substr(1)));
    }
}

}  // namespace dovrel::macho
