#pragma once
#include <sys/types.h>

#define STDERR_FILENO 2
#define SEEK_CUR 1

DARWIN_C_BEGIN
int close(int) DARWIN_UNIX2003("close");
int dup(int);
int ftruncate(int, off_t);
off_t lseek(int, off_t, int);
ssize_t pwrite(int, const void*, size_t, off_t) DARWIN_UNIX2003("pwrite");
ssize_t write(int, const void*, size_t) DARWIN_UNIX2003("write");
int usleep(useconds_t) DARWIN_UNIX2003("usleep");
pid_t getpid(void);
uid_t geteuid(void);
DARWIN_C_END
