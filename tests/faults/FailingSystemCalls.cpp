// Replaces the functions of the C library that make system calls, for this program and everything that it
// loads. They fail as the fault in effect says; otherwise they call the C library.
#include <dirent.h>
#include <dlfcn.h>
#include <poll.h>
#include <pwd.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "tests/faults/Fault.h"

namespace {

using dovrel::test::Fault;
using dovrel::test::strike;

// Sets errno if the call must fail.
bool fails(const char* function) {
    const int error = strike(function);
    if (error <= 0) return false;
    errno = error;
    return true;
}

// Returns how many bytes the call may process, or -1 if it must fail.
ssize_t admitted(const char* function, size_t count) {
    const int error = strike(function);
    if (error > 0) {
        errno = error;
        return -1;
    }
    return static_cast<ssize_t>(error == Fault::kShort && count > 1 ? count / 2 : count);
}

template <typename Function>
Function findNext(const char* function) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, function));
}

const char* nameOf(long number) {
    switch (number) {
        case SYS_chdir:
            return "SYS_chdir";
        case SYS_close_range:
            return "SYS_close_range";
        case SYS_dup3:
            return "SYS_dup3";
        case SYS_execve:
            return "SYS_execve";
        case SYS_fcntl:
            return "SYS_fcntl";
        case SYS_openat:
            return "SYS_openat";
        case SYS_prlimit64:
            return "SYS_prlimit64";
        case SYS_setsid:
            return "SYS_setsid";
        case SYS_wait4:
            return "SYS_wait4";
        default:
            return "";
    }
}

}  // namespace

// The names in C++ differ from those in the C library, whose declarations have attributes that a definition
// would have to repeat.
#define DECLARED(result, name, parameters) extern "C" result replaced_##name parameters __asm__(#name);

#define NEXT(result, name, parameters) static const auto next = findNext<result(*) parameters>(#name)

// A function that does nothing if it fails. `failure` is its result then.
#define REPLACE(result, name, failure, parameters, arguments) \
    DECLARED(result, name, parameters)                        \
    result replaced_##name parameters {                       \
        NEXT(result, name, parameters);                       \
        return fails(#name) ? failure : next arguments;       \
    }

// A function that releases its argument even if it fails.
#define REPLACE_RELEASE(name, parameters, arguments) \
    DECLARED(int, name, parameters)                  \
    int replaced_##name parameters {                 \
        NEXT(int, name, parameters);                 \
        const int result = next arguments;           \
        return fails(#name) ? -1 : result;           \
    }

// A function that returns the number of an error.
#define REPLACE_NUMBERED(name, parameters, arguments) \
    DECLARED(int, name, parameters)                   \
    int replaced_##name parameters {                  \
        NEXT(int, name, parameters);                  \
        return fails(#name) ? errno : next arguments; \
    }

// A function that may process a part of `size` bytes.
#define REPLACE_TRANSFER(name, parameters, arguments) \
    DECLARED(ssize_t, name, parameters)               \
    ssize_t replaced_##name parameters {              \
        NEXT(ssize_t, name, parameters);              \
        const ssize_t part = admitted(#name, size);   \
        if (part < 0) return -1;                      \
        size = static_cast<size_t>(part);             \
        return next arguments;                        \
    }

// A function whose third argument, the mode of a new file, is optional.
#define REPLACE_OPEN(name, parameters, arguments)  \
    DECLARED(int, name, parameters)                \
    int replaced_##name parameters {               \
        NEXT(int, name, parameters);               \
        std::va_list more;                         \
        va_start(more, flags);                     \
        const auto mode = va_arg(more, mode_t);    \
        va_end(more);                              \
        return fails(#name) ? -1 : next arguments; \
    }

REPLACE(int, access, -1, (const char* path, int mode), (path, mode))
REPLACE(int, bind, -1, (int socket, const sockaddr* address, socklen_t size), (socket, address, size))
REPLACE(int, chmod, -1, (const char* path, mode_t mode), (path, mode))
REPLACE(int, connect, -1, (int socket, const sockaddr* address, socklen_t size), (socket, address, size))
REPLACE(int, dup, -1, (int descriptor), (descriptor))
REPLACE(int, dup3, -1, (int from, int to, int flags), (from, to, flags))
REPLACE(int, faccessat, -1, (int folder, const char* path, int mode, int flags), (folder, path, mode, flags))
REPLACE(int, fallocate, -1, (int file, int mode, off_t offset, off_t size), (file, mode, offset, size))
REPLACE(int, fchmod, -1, (int file, mode_t mode), (file, mode))
REPLACE(int, fchmodat, -1, (int folder, const char* path, mode_t mode, int flags),
        (folder, path, mode, flags))
REPLACE(int, flock, -1, (int file, int operation), (file, operation))
REPLACE(int, fstat, -1, (int file, struct stat* status), (file, status))
REPLACE(int, fstatat, -1, (int folder, const char* path, struct stat* status, int flags),
        (folder, path, status, flags))
REPLACE(int, ftruncate, -1, (int file, off_t size), (file, size))
REPLACE(char*, getcwd, nullptr, (char* path, size_t size), (path, size))
REPLACE(int, getsockopt, -1, (int socket, int level, int name, void* value, socklen_t* size),
        (socket, level, name, value, size))
REPLACE(int, listen, -1, (int socket, int backlog), (socket, backlog))
REPLACE(off_t, lseek, -1, (int file, off_t offset, int origin), (file, offset, origin))
REPLACE(int, lstat, -1, (const char* path, struct stat* status), (path, status))
REPLACE(int, madvise, -1, (void* memory, size_t size, int advice), (memory, size, advice))
REPLACE(int, memfd_create, -1, (const char* name, unsigned flags), (name, flags))
REPLACE(int, mkdir, -1, (const char* path, mode_t mode), (path, mode))
REPLACE(int, mkdirat, -1, (int folder, const char* path, mode_t mode), (folder, path, mode))
REPLACE(void*, mmap, MAP_FAILED,
        (void* place, size_t size, int protection, int flags, int file, off_t offset),
        (place, size, protection, flags, file, offset))
REPLACE(int, name_to_handle_at, -1,
        (int folder, const char* path, struct file_handle* handle, int* mount, int flags),
        (folder, path, handle, mount, flags))
REPLACE(DIR*, opendir, nullptr, (const char* path), (path))
REPLACE(int, poll, -1, (pollfd * descriptors, nfds_t count, int milliseconds),
        (descriptors, count, milliseconds))
REPLACE(dirent*, readdir, nullptr, (DIR * folder), (folder))
REPLACE(ssize_t, readlink, -1, (const char* path, char* target, size_t size), (path, target, size))
REPLACE(char*, realpath, nullptr, (const char* path, char* found), (path, found))
REPLACE(ssize_t, recvmsg, -1, (int socket, msghdr* message, int flags), (socket, message, flags))
REPLACE(int, rename, -1, (const char* from, const char* to), (from, to))
REPLACE(int, rmdir, -1, (const char* path), (path))
REPLACE(ssize_t, sendmsg, -1, (int socket, const msghdr* message, int flags), (socket, message, flags))
REPLACE(int, setsockopt, -1, (int socket, int level, int name, const void* value, socklen_t size),
        (socket, level, name, value, size))
REPLACE(int, shutdown, -1, (int socket, int how), (socket, how))
REPLACE(int, sigtimedwait, -1, (const sigset_t* signals, siginfo_t* information, const timespec* time),
        (signals, information, time))
REPLACE(int, socket, -1, (int domain, int type, int protocol), (domain, type, protocol))
REPLACE(int, stat, -1, (const char* path, struct stat* status), (path, status))
REPLACE(int, statx, -1, (int folder, const char* path, int flags, unsigned mask, struct statx* status),
        (folder, path, flags, mask, status))
REPLACE(int, unlink, -1, (const char* path), (path))
REPLACE(int, unlinkat, -1, (int folder, const char* path, int flags), (folder, path, flags))
REPLACE(int, usleep, -1, (useconds_t microseconds), (microseconds))
REPLACE(int, utimensat, -1, (int folder, const char* path, const timespec* times, int flags),
        (folder, path, times, flags))

REPLACE_RELEASE(close, (int file), (file))
REPLACE_RELEASE(fclose, (FILE * file), (file))
REPLACE_RELEASE(munmap, (void* memory, size_t size), (memory, size))

REPLACE_NUMBERED(getpwuid_r, (uid_t user, passwd* entry, char* buffer, size_t size, passwd** found),
                 (user, entry, buffer, size, found))
REPLACE_NUMBERED(pthread_create,
                 (pthread_t * thread, const pthread_attr_t* attributes, void* (*function)(void*),
                  void* argument),
                 (thread, attributes, function, argument))

REPLACE_TRANSFER(pread, (int file, void* buffer, size_t size, off_t offset), (file, buffer, size, offset))
REPLACE_TRANSFER(pwrite, (int file, const void* buffer, size_t size, off_t offset),
                 (file, buffer, size, offset))
REPLACE_TRANSFER(read, (int file, void* buffer, size_t size), (file, buffer, size))
REPLACE_TRANSFER(write, (int file, const void* buffer, size_t size), (file, buffer, size))

REPLACE_OPEN(open, (const char* path, int flags, ...), (path, flags, mode))
REPLACE_OPEN(openat, (int folder, const char* path, int flags, ...), (folder, path, flags, mode))

DECLARED(FILE*, fopen, (const char* path, const char* mode))
FILE* replaced_fopen(const char* path, const char* mode) {
    NEXT(FILE*, fopen, (const char* path, const char* mode));
    return fails("fopen") ? nullptr : next(path, mode);
}

// libstdc++ calls this one.
DECLARED(FILE*, fopen64, (const char* path, const char* mode))
FILE* replaced_fopen64(const char* path, const char* mode) {
    return replaced_fopen(path, mode);
}

DECLARED(size_t, fread, (void* buffer, size_t size, size_t count, FILE* file))
size_t replaced_fread(void* buffer, size_t size, size_t count, FILE* file) {
    constexpr int kErrorSeen = 0x20;  // what ferror() looks at
    NEXT(size_t, fread, (void* buffer, size_t size, size_t count, FILE* file));
    if (!fails("fread")) return next(buffer, size, count, file);
    file->_flags |= kErrorSeen;
    return 0;
}

DECLARED(int, fcntl, (int file, int command, ...))
int replaced_fcntl(int file, int command, ...) {
    NEXT(int, fcntl, (int file, int command, ...));
    std::va_list more;
    va_start(more, command);
    void* const argument = va_arg(more, void*);
    va_end(more);
    return fails("fcntl") ? -1 : next(file, command, argument);
}

DECLARED(long, syscall, (long number, ...))
long replaced_syscall(long number, ...) {
    NEXT(long, syscall, (long number, ...));
    std::va_list more;
    va_start(more, number);
    long arguments[6];
    for (long& argument : arguments)
        argument = va_arg(more, long);
    va_end(more);
    if (fails(nameOf(number))) return -1;
    return next(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]);
}

// The new process begins on a stack of its own, so this function's frame is not in its way.
DECLARED(int, __clone, (int (*function)(void*), void* stack, int flags, void* argument, ...))
int replaced___clone(int (*function)(void*), void* stack, int flags, void* argument, ...) {
    NEXT(int, __clone, (int (*function)(void*), void* stack, int flags, void* argument, ...));
    return fails("clone") ? -1 : next(function, stack, flags, argument);
}
