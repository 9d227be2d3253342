// The imports from libSystem.
#include <copyfile.h>
#include <dlfcn.h>
#include <libc.h>
#include <sys/resource.h>
#include <sys/sysctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "macho/format/ByteReader.h"
#include "macho/imports/ErrorNumber.h"
#include "macho/imports/FileCalls.h"
#include "macho/imports/ReviewedLibraries.h"

extern "C" int __cxa_atexit(void (*)(void*), void*, void*);
extern "C" void _Unwind_Resume(void*);

namespace dovrel::macho {

namespace {

constexpr char kLibrary[] = "/usr/lib/libSystem.B.dylib";

// C library functions that have the same parameters and results on both systems, by their C names.
constexpr const char* kSame[] = {
    // memory and text
    "free", "malloc", "memchr", "memcmp", "memcpy", "memmove", "memset", "realloc", "strlen",
    // files; FILE is opaque
    "close", "dup", "fchmod", "fclose", "fflush", "fileno", "flock", "fopen", "fprintf", "fputc", "fread",
    "fseek", "ftell", "fwrite", "printf", "putchar", "puts", "remove", "rename", "snprintf", "write",
    // time; clock() counts microseconds on both systems, and struct tm is the same. The microseconds of
    // struct timeval are a shorter number on macOS, with the same bytes at the beginning
    "asctime", "clock", "gettimeofday", "gmtime_r", "localtime_r", "strftime", "time", "tzset", "usleep",
    // the process; the exit status has the same bits on both systems
    "abort", "getenv", "geteuid", "getpid", "pthread_self", "rand", "srand", "system"};

void stackWasOverwritten() {
    std::fputs("the bundle has written beyond the end of a variable on the stack\n", stderr);
    std::abort();
}

// Must not be called, because all symbols are bound when the image is loaded.
void neverCalled() {
    std::fputs("the bundle binds at its first call\n", stderr);
    std::abort();
}

void zero(void* bytes, size_t size) {
    std::memset(bytes, 0, size);
}

void* findSystemFunction(const char* name) {
    void* const function = dlsym(RTLD_DEFAULT, name);
    if (function == nullptr) throw FormatError(std::string("this system has no ") + name);
    return function;
}

// Adds a function by all its names. In 32-bit images some names have a suffix, which distinguishes the
// standard function from an older one.
void addByItsNames(ImportTable& table, const std::string& name, void* function) {
    table.add(kLibrary, "_" + name, function);
    if (sizeof(void*) == 4) table.add(kLibrary, "_" + name + "$UNIX2003", function);
}

}  // namespace

void addSystemLibrary(ImportTable& table) {
    for (const char* const name : kSame)
        addByItsNames(table, name, findSystemFunction(name));
    addByItsNames(table, "open", reinterpret_cast<void*>(&platformOpen));
    // By address: in 32-bit programs these names refer to other functions, which support files of up to
    // 2 GiB. For getrlimit() RLIMIT_FSIZE has the same number on both systems.
    addByItsNames(table, "ftruncate", reinterpret_cast<void*>(&ftruncate));
    addByItsNames(table, "getrlimit", reinterpret_cast<void*>(&getrlimit));
    addByItsNames(table, "lseek", reinterpret_cast<void*>(&lseek));
    addByItsNames(table, "pwrite", reinterpret_cast<void*>(&pwrite));

    static uintptr_t guard = 0x5AC39F00;  // contains a zero byte, which stops an overflowing text copy
    table.add(kLibrary, "___stack_chk_guard", &guard);
    table.add(kLibrary, "___stack_chk_fail", &stackWasOverwritten);
    table.add(kLibrary, "dyld_stub_binder", &neverCalled);
    table.add(kLibrary, "___stdinp", &stdin);
    table.add(kLibrary, "___stdoutp", &stdout);
    table.add(kLibrary, "___stderrp", &stderr);
    table.add(kLibrary, "___error", &errorNumber);
    table.add(kLibrary, "___bzero", &zero);
    table.add(kLibrary, "_bzero", &zero);
    table.add(kLibrary, "___cxa_atexit", &__cxa_atexit);
    table.add(kLibrary, "__Unwind_Resume", &_Unwind_Resume);

    table.add(kLibrary, "_stat$INODE64", &platformStat);
    table.add(kLibrary, "_lstat$INODE64", &platformLstat);
    table.add(kLibrary, "_fstat$INODE64", &platformFstat);
    table.add(kLibrary, "_copyfile", &copyfile);
    table.add(kLibrary, "_issetugid", reinterpret_cast<void*>(&issetugid));
    table.add(kLibrary, "_sysctl", reinterpret_cast<void*>(&sysctl));
}

}  // namespace dovrel::macho
