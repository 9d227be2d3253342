#include "tests/macho/sample/Sample.h"

#include <CoreServices/CoreServices.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#define EXPORTED __attribute__((visibility("default")))
#define NOT_INLINED __attribute__((noinline))
#define EXPECT(condition) \
    if (!(condition)) return __LINE__

namespace {

int made = 0;

// Like the library's own objects, the objects of this bundle are never destroyed.
struct Made {
    Made() { ++made; }
    const std::string& text = *new std::string("made before main, and too long for the object itself");
};

const Made firstMade;

struct Failure {
    explicit Failure(int failureCode) : code(failureCode) {}
    virtual ~Failure() = default;
    int code;
};

struct NamedFailure : Failure {
    NamedFailure(int failureCode, std::string failureName)
        : Failure(failureCode), name(std::move(failureName)) {}
    std::string name;
};

struct OnWayOut {
    explicit OnWayOut(int* counted) : count(counted) {}
    ~OnWayOut() { ++*count; }
    int* count;
};

NOT_INLINED void fail(int kind) {
    const std::string local("long enough to have its bytes elsewhere");
    if (kind == 0) throw new Failure(10);
    if (kind == 1) throw new NamedFailure(11, local);
    if (kind == 2) throw "text";
}

NOT_INLINED int manyArguments(int kind, int* count, int a, int b, int c, int d, int e, int f) {
    const OnWayOut onWayOut(count);
    fail(kind);
    return a + b * c - d + e * f;
}

NOT_INLINED int pushed(int kind, int* count) {
    const OnWayOut onWayOut(count);
    const int first = manyArguments(kind, count, 1, 2, 3, 4, 5, 6);
    return first + manyArguments(kind, count, 2, 3, 4, 5, 6, 7);
}

NOT_INLINED int large(int kind, int* count) {
    char local[20000];
    std::memset(local, kind, sizeof local);
    const OnWayOut onWayOut(count);
    const int result = pushed(kind, count);
    return result + local[100 * kind];
}

NOT_INLINED int variable(int kind, int* count, size_t size) {
    char* const local = static_cast<char*>(__builtin_alloca(size));
    std::memset(local, kind, size);
    const OnWayOut onWayOut(count);
    const int result = large(kind, count);
    return result + local[kind];
}

NOT_INLINED int aligned(int kind, int* count) {
    alignas(64) char local[256];
    std::memset(local, kind, sizeof local);
    const OnWayOut onWayOut(count);
    const int result = variable(kind, count, 100);
    return result + local[kind];
}

constexpr int kFrames = 5;

NOT_INLINED int caught(int kind, int* count) {
    try {
        return aligned(kind, count);
    } catch (NamedFailure* failure) {
        const std::unique_ptr<NamedFailure> owner(failure);
        return owner->name.size() == 39 ? owner->code : -1;
    } catch (Failure* failure) {
        const std::unique_ptr<Failure> owner(failure);
        return owner->code;
    } catch (const char*) {
        return 12;
    }
}

std::mutex& mutex = *new std::mutex;

}  // namespace

EXPORTED int Sample_Initialisers() {
    EXPECT(made == 1);
    EXPECT(firstMade.text.size() == 52);
    static const Made another;
    EXPECT(made == 2);
    return 0;
}

EXPORTED int Sample_Exceptions() {
    for (int kind = 0; kind < 3; ++kind) {
        int count = 0;
        EXPECT(caught(kind, &count) == 10 + kind);
        EXPECT(count == kFrames);
    }
    int count = 0;
    EXPECT(caught(3, &count) != 0);
    EXPECT(count == kFrames + 1);
    for (int i = 0; i < 2000; ++i)
        EXPECT(caught(i % 3, &count) == 10 + i % 3);
    return 0;
}

EXPORTED int Sample_CatchAll(void (*function)()) {
    try {
        function();
    } catch (...) {
        return 1;
    }
    return 0;
}

EXPORTED int Sample_LibraryExceptions() {
    volatile size_t huge = static_cast<size_t>(-1) / 4;
    try {
        std::string tooLong("x");
        tooLong.resize(huge * 4 - 8);
        return __LINE__;
    } catch (const std::length_error&) {
    }
    try {
        char* volatile const tooLarge = new char[huge * 3];  // volatile, so that the compiler keeps it
        delete[] tooLarge;
        return __LINE__;
    } catch (const std::bad_alloc&) {
    }
    try {
        EXPECT(firstMade.text.substr(huge).empty());
        return __LINE__;
    } catch (const std::exception& error) {
        EXPECT(error.what() != nullptr);
    }
    return 0;
}

EXPORTED int Sample_Mutex() {
    for (int i = 0; i < 2; ++i) {
        const std::lock_guard<std::mutex> lock(mutex);
        EXPECT(made >= 1);
    }
    return 0;
}

EXPORTED int Sample_ErrorNumbers(const char* folder) {
    errno = 0;
    EXPECT(fopen((std::string(folder) + "/missing").c_str(), "rb") == nullptr);
    EXPECT(errno == ENOENT);
    errno = 0;
    EXPECT(errno == 0);

    const std::string path = std::string(folder) + "/locked";
    const int one = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int two = open(path.c_str(), O_WRONLY | O_APPEND | O_NONBLOCK);
    EXPECT(one >= 0 && two >= 0);
    EXPECT(flock(one, LOCK_EX | LOCK_NB) == 0);
    EXPECT(flock(two, LOCK_EX | LOCK_NB) == -1);
    EXPECT(errno == EWOULDBLOCK);
    close(two);
    close(one);

    EXPECT(open((std::string(folder) + "/link").c_str(), O_WRONLY | O_NOFOLLOW) == -1);
    EXPECT(errno == ELOOP);
    return 0;
}

EXPORTED int64_t Sample_FileSize(const char* path) {
    struct stat byName;
    struct stat byDescriptor;
    FILE* const file = fopen(path, "rb");
    const bool isTold =
        file != nullptr && lstat(path, &byName) == 0 && fstat(fileno(file), &byDescriptor) == 0;
    if (file != nullptr) fclose(file);
    const bool isRight = isTold && S_ISREG(byName.st_mode) && byName.st_ino == byDescriptor.st_ino &&
                         byName.st_dev == byDescriptor.st_dev && byName.st_size == byDescriptor.st_size;
    return isRight ? byName.st_size : -1;
}

EXPORTED uint32_t Sample_ModificationSeconds(const char* path) {
    const CFStringRef name = CFStringCreateWithCString(kCFAllocatorDefault, path, kCFStringEncodingUTF8);
    const CFURLRef url =
        CFURLCreateWithFileSystemPath(kCFAllocatorDefault, name, kCFURLPOSIXPathStyle, false);
    FSRef file;
    FSCatalogInfo information;
    std::memset(&information, 0, sizeof information);
    const bool isTold =
        CFURLGetFSRef(url, &file) &&
        FSGetCatalogInfo(&file, kFSCatInfoContentMod, &information, nullptr, nullptr, nullptr) == noErr;
    CFRelease(url);
    CFRelease(name);
    return isTold ? information.contentModDate.lowSeconds : 0;
}
