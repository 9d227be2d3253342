// Imports that exist only in 64-bit images or have another meaning in them.
#include <objc/runtime.h>

#include "macho/imports/ReviewedLibraries.h"
#include "macho/imports/StandardLibrary.h"
#include "macho/objc/ObjectiveCExceptions.h"

namespace dovrel::macho {

namespace {

constexpr char kObjectiveC[] = "/usr/lib/libobjc.A.dylib";
constexpr char kCppLibrary[] = "/usr/lib/libc++.1.dylib";

// Functions of libc++ that return small structures. (The steady clock counts nanoseconds from an unspecified
// start, the other one microseconds from 1970.)
constexpr const char* kSame[] = {
    "_ZNSt3__16chrono12steady_clock3nowEv", "_ZNSt3__16chrono12system_clock3nowEv",
    "_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6insertENS_11__wrap_iterIPKcEEc"};

}  // namespace

void addImportsOfWidth(ImportTable& table) {
    // The image's class descriptions refer to these. This system's runtime stores such data itself.
    static char unused[64];
    table.add(kObjectiveC, "__objc_empty_cache", unused);
    table.add(kObjectiveC, "__objc_empty_vtable", unused);
    table.add(kObjectiveC, "_objc_begin_catch", &beginCatch);
    table.add(kObjectiveC, "_objc_end_catch", &endCatch);
    // The C++ personality passes exceptions of other languages only to handlers for all exceptions. The
    // bundle has no other handlers for them.
    table.add(kObjectiveC, "___objc_personality_v0", standardLibrarySymbol("__gxx_personality_v0"));
    for (const char* const name : kSame)
        table.add(kCppLibrary, std::string("_") + name, standardLibrarySymbol(name));
}

}  // namespace dovrel::macho
