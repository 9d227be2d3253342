#pragma once
#include <sys/types.h>

DARWIN_C_BEGIN
int gettimeofday(struct timeval* DARWIN_RESTRICT, void* DARWIN_RESTRICT);
DARWIN_C_END
