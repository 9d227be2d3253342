#pragma once
#include <sys/types.h>

#define LOCK_SH 1
#define LOCK_EX 2
#define LOCK_NB 4
#define LOCK_UN 8

DARWIN_C_BEGIN
int flock(int, int);
DARWIN_C_END
