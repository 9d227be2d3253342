#pragma once
#include <sys/types.h>
#include "_base.h"
DARWIN_C_BEGIN
int close(int) DARWIN_UNIX2003("close");
ssize_t write(int, const void*, size_t) DARWIN_UNIX2003("write");
int usleep(__uint32_t) DARWIN_UNIX2003("usleep");
__int32_t getpid(void);
DARWIN_C_END
