#pragma once
#include "_base.h"
#define EXIT_SUCCESS 0
#define EXIT_FAILURE 1
#define RAND_MAX 0x7fffffff
#define MB_CUR_MAX (___mb_cur_max())
DARWIN_C_BEGIN
typedef struct {
    int quot, rem;
} div_t;
DARWIN_RECORD(div_t, 8, 8, int);
typedef struct {
    long quot, rem;
} ldiv_t;
DARWIN_RECORD(ldiv_t, 8, 16, long);
typedef struct {
    long long quot, rem;
} lldiv_t;
DARWIN_RECORD(lldiv_t, 16, 16, long long);
void* malloc(size_t);
void* calloc(size_t, size_t);
void* realloc(void*, size_t);
void free(void*);
int posix_memalign(void**, size_t, size_t);
void abort(void) __attribute__((noreturn));
void exit(int) __attribute__((noreturn));
void _Exit(int) __attribute__((noreturn));
int atexit(void (*)(void));
char* getenv(const char*);
int system(const char*) DARWIN_UNIX2003("system");
double atof(const char*);
int atoi(const char*);
long atol(const char*);
long long atoll(const char*);
double strtod(const char*, char**) DARWIN_UNIX2003("strtod");
float strtof(const char*, char**);
long double strtold(const char*, char**);
long strtol(const char*, char**, int);
long long strtoll(const char*, char**, int);
unsigned long strtoul(const char*, char**, int);
unsigned long long strtoull(const char*, char**, int);
int rand(void);
void srand(unsigned);
__uint32_t arc4random(void);
void* bsearch(const void*, const void*, size_t, size_t, int (*)(const void*, const void*));
void qsort(void*, size_t, size_t, int (*)(const void*, const void*));
int abs(int);
long labs(long);
long long llabs(long long);
div_t div(int, int);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
int mblen(const char*, size_t);
int mbtowc(wchar_t*, const char*, size_t);
int wctomb(char*, wchar_t);
size_t mbstowcs(wchar_t*, const char*, size_t);
size_t wcstombs(char*, const wchar_t*, size_t);
int ___mb_cur_max(void);
DARWIN_C_END
