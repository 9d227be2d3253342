// Imports that only 64-bit images have, or that are something else for the others.
#include <objc/runtime.h>

#include "macho/imports/ReviewedLibraries.h"
#include "macho/imports/StandardLibrary.h"
#include "macho/objc/ObjectiveCExceptions.h"

namespace dovrel::macho {

namespace {

constexpr char kObjectiveC[] = "/usr/lib/libobjc.A.dylib";
constexpr char kCppLibrary[] = "/usr/lib/libc++.1.dylib";

// Of libc++, where they answer small structures. (The clock counts nanoseconds from a beginning that nobody
// knows.)
constexpr const char* kSame[] = {
    "_ZNSt3__16chrono12steady_clock3nowEv",
    "_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6insertENS_11__wrap_iterIPKcEEc"};

}  // namespace

void addImportsOfWidth(ImportTable& table) {
    // Written where an image's classes are; this system's runtime keeps such things for itself.
    static char unused[64];
    table.add(kObjectiveC, "__objc_empty_cache", unused);
    table.add(kObjectiveC, "__objc_empty_vtable", unused);
    table.add(kObjectiveC, "_objc_begin_catch", &beginCatch);
    table.add(kObjectiveC, "_objc_end_catch", &endCatch);
    // For C++ the exceptions of another language go to handlers of everything, which are the only ones here.
    table.add(kObjectiveC, "___objc_personality_v0", standardLibrarySymbol("__gxx_personality_v0"));
    for (const char* const name : kSame)
        table.add(kCppLibrary, std::string("_") + name, standardLibrarySymbol(name));
}

}  // namespace dovrel::macho
