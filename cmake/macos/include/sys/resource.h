#pragma once
#include <sys/types.h>

typedef __uint64_t rlim_t;
struct rlimit {
    rlim_t rlim_cur;
    rlim_t rlim_max;
};
DARWIN_RECORD(struct rlimit, 16, 16, rlim_t);

#define RLIMIT_FSIZE 1

DARWIN_C_BEGIN
int getrlimit(int, struct rlimit*) DARWIN_UNIX2003("getrlimit");
DARWIN_C_END
