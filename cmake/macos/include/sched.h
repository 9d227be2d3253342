#pragma once
#include "_base.h"
DARWIN_C_BEGIN
int sched_yield(void);
DARWIN_C_END
