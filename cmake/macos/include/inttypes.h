#pragma once
#include <stdint.h>
DARWIN_C_BEGIN
typedef struct {
    intmax_t quot, rem;
} imaxdiv_t;
DARWIN_RECORD(imaxdiv_t, 16, 16, intmax_t);
intmax_t imaxabs(intmax_t);
imaxdiv_t imaxdiv(intmax_t, intmax_t);
intmax_t strtoimax(const char*, char**, int);
uintmax_t strtoumax(const char*, char**, int);
intmax_t wcstoimax(const wchar_t*, wchar_t**, int);
uintmax_t wcstoumax(const wchar_t*, wchar_t**, int);
DARWIN_C_END
