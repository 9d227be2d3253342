// Imports that exist only in 32-bit images or have another meaning in them.
#include "macho/imports/ReviewedLibraries.h"
#include "macho/imports/StandardLibrary.h"
#include "macho/objc/LegacyTry.h"

namespace dovrel::macho {

namespace {

constexpr char kSystem[] = "/usr/lib/libSystem.B.dylib";
constexpr char kObjectiveC[] = "/usr/lib/libobjc.A.dylib";
constexpr char kCppLibrary[] = "/usr/lib/libc++.1.dylib";

// On macOS functions return structures of up to 8 bytes in registers, like integers. On this system they
// return them through memory.
constexpr char kSteadyNow[] = "_ZNSt3__16chrono12steady_clock3nowEv";
constexpr char kSystemNow[] = "_ZNSt3__16chrono12system_clock3nowEv";
constexpr char kInsert[] =
    "_ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE6insertENS_11__wrap_iterIPKcEEc";

struct Time {
    int64_t sinceStart;
};
using Now = Time (*)();

int64_t steadyNow() {
    static const auto system = reinterpret_cast<Now>(standardLibrarySymbol(kSteadyNow));
    return system().sinceStart;
}

int64_t systemNow() {
    static const auto system = reinterpret_cast<Now>(standardLibrarySymbol(kSystemNow));
    return system().sinceStart;
}

const char* insert(void* string, const char* place, char character) {
    struct Iterator {
        const char* place;
    };
    static const auto system =
        reinterpret_cast<Iterator (*)(void*, Iterator, char)>(standardLibrarySymbol(kInsert));
    return system(string, {place}, character).place;
}

}  // namespace

void addImportsOfWidth(ImportTable& table) {
    table.add(kSystem, "__setjmp", &macho_setjmp);
    table.add(kObjectiveC, "_objc_exception_try_enter", &enterTry);
    table.add(kObjectiveC, "_objc_exception_try_exit", &leaveTry);
    table.add(kCppLibrary, std::string("_") + kSteadyNow, &steadyNow);
    table.add(kCppLibrary, std::string("_") + kSystemNow, &systemNow);
    table.add(kCppLibrary, std::string("_") + kInsert, &insert);
}

}  // namespace dovrel::macho
