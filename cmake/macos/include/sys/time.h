#pragma once
#include <sys/types.h>

struct timeval {
    time_t tv_sec;
    __int32_t tv_usec;
};
DARWIN_RECORD(struct timeval, 8, 16, time_t);

DARWIN_C_BEGIN
int gettimeofday(struct timeval* DARWIN_RESTRICT, void* DARWIN_RESTRICT);
DARWIN_C_END
