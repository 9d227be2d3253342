#pragma once
#include <_base.h>

typedef __int32_t pid_t;
typedef __uint32_t uid_t;
typedef __uint32_t gid_t;
typedef __uint16_t mode_t;
typedef __uint16_t nlink_t;
typedef __int32_t dev_t;
typedef __uint64_t ino_t;
typedef __int64_t blkcnt_t;
typedef __int32_t blksize_t;
typedef __uint32_t useconds_t;
