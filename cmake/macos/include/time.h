#pragma once
#include "_base.h"
#define CLOCKS_PER_SEC 1000000
struct tm {
    int tm_sec, tm_min, tm_hour, tm_mday, tm_mon, tm_year, tm_wday, tm_yday, tm_isdst;
    long tm_gmtoff;
    char* tm_zone;
};
DARWIN_RECORD(struct tm, 44, 56, char*);
typedef enum { _CLOCK_REALTIME = 0, _CLOCK_MONOTONIC = 6 } clockid_t;
DARWIN_C_BEGIN
clock_t clock(void) DARWIN_UNIX2003("clock");
double difftime(time_t, time_t);
time_t mktime(struct tm*) DARWIN_UNIX2003("mktime");
time_t time(time_t*);
char* asctime(const struct tm*);
char* ctime(const time_t*);
struct tm* gmtime(const time_t*);
struct tm* localtime(const time_t*);
struct tm* localtime_r(const time_t*, struct tm*);
void tzset(void);
struct tm* gmtime_r(const time_t*, struct tm*);
size_t strftime(char*, size_t, const char*, const struct tm*) DARWIN_UNIX2003("strftime");
int nanosleep(const struct timespec*, struct timespec*) DARWIN_UNIX2003("nanosleep");
DARWIN_C_END
