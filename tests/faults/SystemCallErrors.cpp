#include "tests/faults/SystemCallErrors.h"

#include <cerrno>
#include <cstring>
#include <initializer_list>

namespace dovrel::test {

namespace {

// In the order of the names. Functions that begin with "SYS_" are called by number, through syscall(). The
// errors are those of the manual pages of Linux, without those that only show that the caller passed a wrong
// pointer or descriptor (EFAULT, EBADF, ENOTSOCK). fopen can fail as open, pread as read, pwrite as write. A
// wait for a child can fail only if it is interrupted.
constexpr SystemCallErrors kErrors[] = {
    {"access", {EACCES, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EPERM, EROFS, ETXTBSY}},
    {"bind",
     {EACCES, EADDRINUSE, EINVAL, EADDRNOTAVAIL, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EROFS}},
    {"chmod", {EACCES, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, ENOTSUP, EPERM, EROFS}},
    {"clone", {EACCES, EAGAIN, EBUSY, EEXIST, EINVAL, ENOMEM, ENOSPC, EOPNOTSUPP, EPERM}},
    {"close", {EINTR, EIO, ENOSPC}},
    {"connect",
     {EACCES, EADDRINUSE, EADDRNOTAVAIL, EAFNOSUPPORT, EAGAIN, EALREADY, ECONNREFUSED, EINPROGRESS, EINTR,
      EISCONN, ENETUNREACH, EPROTOTYPE, ETIMEDOUT}},
    {"dup", {EINTR, EMFILE}},
    {"dup3", {EBUSY, EINTR, EINVAL, EMFILE}},
    {"faccessat", {EACCES, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EPERM, EROFS, ETXTBSY}},
    {"fallocate", {EFBIG, EINTR, EINVAL, EIO, ENODEV, ENOSPC, ENOSYS, EOPNOTSUPP, EPERM, ESPIPE, ETXTBSY}},
    {"fchmod", {EACCES, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, ENOTSUP, EPERM, EROFS}},
    {"fchmodat", {EACCES, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, ENOTSUP, EPERM, EROFS}},
    {"fclose", {EIO, ENOSPC}},
    {"fcntl", {EACCES, EAGAIN, EDEADLK, EINTR, EINVAL, EMFILE, ENOLCK, EPERM}},
    {"flock", {EINTR, EINVAL, ENOLCK, EWOULDBLOCK}},
    {"fopen", {EACCES, EBUSY,  EDQUOT,  EEXIST,       EFBIG,  EOVERFLOW, EINTR,   EINVAL,
               EISDIR, ELOOP,  EMFILE,  ENAMETOOLONG, ENFILE, ENODEV,    ENXIO,   ENOENT,
               ENOMEM, ENOSPC, ENOTDIR, EOPNOTSUPP,   EPERM,  EROFS,     ETXTBSY, EWOULDBLOCK}},
    {"fread", {EIO, EISDIR, EINTR}},
    {"fstat", {ENOMEM, EOVERFLOW}},
    {"fstatat", {EACCES, EINVAL, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EOVERFLOW}},
    {"ftruncate", {EFBIG, EINTR, EINVAL, EIO, EISDIR, EPERM, EROFS, ETXTBSY}},
    {"getcwd", {EACCES, EINVAL, ENAMETOOLONG, ENOENT, ENOMEM, ERANGE}},
    {"getpwuid_r", {EINTR, EIO, EMFILE, ENFILE, ENOMEM, ERANGE}},
    {"getsockopt", {EINVAL, ENOPROTOOPT}},
    {"listen", {EADDRINUSE, EOPNOTSUPP}},
    {"lseek", {EINVAL, ENXIO, EOVERFLOW, ESPIPE}},
    {"lstat", {EACCES, EINVAL, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EOVERFLOW}},
    {"madvise", {EACCES, EAGAIN, EBUSY, EINVAL, EIO, ENOMEM, EPERM}},
    {"memfd_create", {EINVAL, EMFILE, ENFILE, ENOMEM}},
    {"mkdir",
     {EACCES, EDQUOT, EEXIST, EINVAL, ELOOP, EMLINK, ENAMETOOLONG, ENOENT, ENOMEM, ENOSPC, ENOTDIR, EPERM,
      EROFS}},
    {"mkdirat",
     {EACCES, EDQUOT, EEXIST, EINVAL, ELOOP, EMLINK, ENAMETOOLONG, ENOENT, ENOMEM, ENOSPC, ENOTDIR, EPERM,
      EROFS}},
    {"mmap", {EACCES, EAGAIN, EINVAL, ENFILE, ENODEV, ENOMEM, EOVERFLOW, EPERM, ETXTBSY}},
    {"munmap", {EINVAL, ENOMEM}},
    {"name_to_handle_at", {EINVAL, ENOENT, ENOTDIR, EOPNOTSUPP, EOVERFLOW, ELOOP, EPERM, ESTALE}},
    {"open", {EACCES, EBUSY,  EDQUOT,  EEXIST,       EFBIG,  EOVERFLOW, EINTR,   EINVAL,
              EISDIR, ELOOP,  EMFILE,  ENAMETOOLONG, ENFILE, ENODEV,    ENXIO,   ENOENT,
              ENOMEM, ENOSPC, ENOTDIR, EOPNOTSUPP,   EPERM,  EROFS,     ETXTBSY, EWOULDBLOCK}},
    {"openat", {EACCES, EBUSY,  EDQUOT,  EEXIST,       EFBIG,  EOVERFLOW, EINTR,   EINVAL,
                EISDIR, ELOOP,  EMFILE,  ENAMETOOLONG, ENFILE, ENODEV,    ENXIO,   ENOENT,
                ENOMEM, ENOSPC, ENOTDIR, EOPNOTSUPP,   EPERM,  EROFS,     ETXTBSY, EWOULDBLOCK}},
    {"opendir", {EACCES, EMFILE, ENFILE, ENOENT, ENOMEM, ENOTDIR}},
    {"poll", {EINTR, EINVAL, ENOMEM}},
    {"pread", {EAGAIN, EINTR, EINVAL, EIO, EISDIR}},
    {"pthread_create", {EAGAIN, EINVAL, EPERM}},
    {"pwrite", {EAGAIN, EDESTADDRREQ, EDQUOT, EFBIG, EINTR, EINVAL, EIO, ENOSPC, EPERM, EPIPE}},
    {"read", {EAGAIN, EINTR, EINVAL, EIO, EISDIR}},
    {"readdir", {EINVAL, ENOENT, ENOTDIR}},
    {"readlink", {EACCES, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR}},
    {"realpath", {EACCES, EINVAL, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR}},
    {"recvmsg", {EAGAIN, ECONNREFUSED, ECONNRESET, EINTR, EINVAL, ENOMEM, ENOTCONN}},
    {"rename",
     {EACCES, EBUSY, EDQUOT, EINVAL, EISDIR, ELOOP, EMLINK, ENAMETOOLONG, ENOENT, ENOMEM, ENOSPC, ENOTDIR,
      ENOTEMPTY, EPERM, EROFS, EXDEV, EEXIST}},
    {"rmdir",
     {EACCES, EBUSY, EINVAL, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, ENOTEMPTY, EEXIST, EPERM, EROFS}},
    {"sendmsg",
     {EACCES, EAGAIN, EALREADY, ECONNRESET, EDESTADDRREQ, EINTR, EINVAL, EISCONN, EMSGSIZE, ENOBUFS, ENOMEM,
      ENOTCONN, EOPNOTSUPP, EPIPE}},
    {"sendto",
     {EACCES, EAGAIN, EALREADY, ECONNRESET, EDESTADDRREQ, EINTR, EINVAL, EISCONN, EMSGSIZE, ENOBUFS, ENOMEM,
      ENOTCONN, EOPNOTSUPP, EPIPE}},
    {"setsockopt", {EINVAL, ENOPROTOOPT}},
    {"shutdown", {EINVAL, ENOTCONN}},
    {"sigtimedwait", {EAGAIN, EINTR, EINVAL}},
    {"socket", {EACCES, EAFNOSUPPORT, EINVAL, EMFILE, ENFILE, ENOBUFS, EPROTONOSUPPORT}},
    {"stat", {EACCES, EINVAL, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EOVERFLOW}},
    {"statx", {EACCES, EINVAL, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR}},
    {"unlink",
     {EACCES, EBUSY, EIO, EISDIR, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EPERM, EROFS, EINVAL}},
    {"unlinkat",
     {EACCES, EBUSY, EIO, EISDIR, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EPERM, EROFS, EINVAL}},
    {"usleep", {EINTR, EINVAL}},
    {"utimensat", {EACCES, EINVAL, ELOOP, ENAMETOOLONG, ENOENT, ENOTDIR, EPERM, EROFS, ESRCH}},
    {"write", {EAGAIN, EDESTADDRREQ, EDQUOT, EFBIG, EINTR, EINVAL, EIO, ENOSPC, EPERM, EPIPE}},
    {"SYS_chdir", {EACCES, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR}},
    {"SYS_close_range", {EINVAL, EMFILE, ENOMEM}},
    {"SYS_dup3", {EBUSY, EINTR, EINVAL, EMFILE}},
    {"SYS_execve",
     {E2BIG, EACCES, EAGAIN, EINVAL, EIO, EISDIR, ELIBBAD, ELOOP, ENOEXEC, EMFILE, ENAMETOOLONG, ENFILE,
      ENOENT, ENOMEM, ENOTDIR, EPERM, ETXTBSY}},
    {"SYS_fcntl", {EINVAL, EMFILE}},
    {"SYS_openat", {EACCES, EBUSY,  EDQUOT,  EEXIST,       EFBIG,  EOVERFLOW, EINTR,   EINVAL,
                    EISDIR, ELOOP,  EMFILE,  ENAMETOOLONG, ENFILE, ENODEV,    ENXIO,   ENOENT,
                    ENOMEM, ENOSPC, ENOTDIR, EOPNOTSUPP,   EPERM,  EROFS,     ETXTBSY, EWOULDBLOCK}},
    {"SYS_prlimit64", {EINVAL, EPERM}},
    {"SYS_setsid", {EPERM}},
    {"SYS_wait4", {EINTR}},
};

}  // namespace

const SystemCallErrors* findErrors(const char* function) {
    for (const SystemCallErrors& row : kErrors) {
        if (std::strcmp(row.function, function) == 0) return &row;
    }
    return nullptr;
}

bool canFailWith(const char* function, int error) {
    const SystemCallErrors* const row = findErrors(function);
    if (row == nullptr) return false;
    for (const int* known = row->errors; *known != 0; ++known) {
        if (*known == error) return true;
    }
    return false;
}

bool canBeShort(const char* function) {
    for (const char* const name : {"fread", "pread", "pwrite", "read", "write"}) {
        if (std::strcmp(name, function) == 0) return true;
    }
    return false;
}

}  // namespace dovrel::test
