#pragma once
#include <sys/types.h>

#define S_IFMT 0170000
#define S_IFDIR 0040000
#define S_IFREG 0100000
#define S_ISDIR(mode) (((mode)&S_IFMT) == S_IFDIR)
#define S_ISREG(mode) (((mode)&S_IFMT) == S_IFREG)

// The structure with 64-bit inode numbers, and the functions that fill it.
struct stat {
    dev_t st_dev;
    mode_t st_mode;
    nlink_t st_nlink;
    ino_t st_ino;
    uid_t st_uid;
    gid_t st_gid;
    dev_t st_rdev;
    struct timespec st_atimespec;
    struct timespec st_mtimespec;
    struct timespec st_ctimespec;
    struct timespec st_birthtimespec;
    off_t st_size;
    blkcnt_t st_blocks;
    blksize_t st_blksize;
    __uint32_t st_flags;
    __uint32_t st_gen;
    __int32_t st_lspare;
    __int64_t st_qspare[2];
};
DARWIN_RECORD(struct stat, 108, 144, __int64_t);

DARWIN_C_BEGIN
int fstat(int, struct stat*) __asm("_fstat$INODE64");
int lstat(const char*, struct stat*) __asm("_lstat$INODE64");
int stat(const char*, struct stat*) __asm("_stat$INODE64");
int fchmod(int, mode_t) DARWIN_UNIX2003("fchmod");
DARWIN_C_END
