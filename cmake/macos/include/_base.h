// The part of Darwin's C library that the library and the C++ headers use, for 32 and 64 bits. Only the cross
// build uses this folder: a Mac has its own headers, and Linux has those of glibc.
#pragma once
#include <stdarg.h>
#include <stddef.h>
#ifdef __cplusplus
#define DARWIN_C_BEGIN extern "C" {
#define DARWIN_C_END }
#define DARWIN_RESTRICT
#else
#define DARWIN_C_BEGIN
#define DARWIN_C_END
#define DARWIN_RESTRICT restrict
#define static_assert _Static_assert
#define alignof _Alignof
#endif

// Functions whose behaviour was changed to follow the standard have a second name for 32-bit programs. In
// 64-bit programs the plain name has the new behaviour.
#if defined(__LP64__)
#define DARWIN_UNIX2003(name)
#define DARWIN_WIDTH(bits32, bits64) bits64
#else
#define DARWIN_UNIX2003(name) __asm("_" name "$UNIX2003")
#define DARWIN_WIDTH(bits32, bits64) bits32
#endif

// Checks the size of a structure for both widths. Its alignment is that of the type `strictest`.
#define DARWIN_RECORD(record, bytes32, bytes64, strictest)                                                   \
    static_assert(sizeof(record) == DARWIN_WIDTH(bytes32, bytes64) && alignof(record) == alignof(strictest), \
                  "the system's record")

typedef signed char __int8_t;
typedef unsigned char __uint8_t;
typedef short __int16_t;
typedef unsigned short __uint16_t;
typedef int __int32_t;
typedef unsigned int __uint32_t;
typedef long long __int64_t;
typedef unsigned long long __uint64_t;
typedef long __darwin_ssize_t;
typedef long __darwin_time_t;
typedef unsigned long __darwin_clock_t;
typedef long __darwin_intptr_t;
typedef unsigned long __darwin_uintptr_t;
typedef __int64_t off_t;
typedef __darwin_ssize_t ssize_t;
typedef __darwin_time_t time_t;
typedef __darwin_clock_t clock_t;
typedef union {
    char __mbstate8[128];
    long long _mbstateL;
} __mbstate_t;
DARWIN_RECORD(__mbstate_t, 128, 128, long long);
typedef __mbstate_t __darwin_mbstate_t;
typedef __darwin_mbstate_t mbstate_t;
typedef int __darwin_wint_t;
typedef __darwin_wint_t wint_t;
typedef __uint32_t wctype_t;
typedef int wctrans_t;
struct _xlocale;
typedef struct _xlocale* locale_t;
struct tm;
struct timespec {
    time_t tv_sec;
    long tv_nsec;
};
DARWIN_RECORD(struct timespec, 8, 16, long);
struct timeval {
    time_t tv_sec;
    __int32_t tv_usec;
};
DARWIN_RECORD(struct timeval, 8, 16, time_t);
