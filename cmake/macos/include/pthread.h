#pragma once
#include <sched.h>
#include <time.h>
#include "_base.h"
struct _opaque_pthread_t;
typedef struct _opaque_pthread_t* pthread_t;
typedef unsigned long pthread_key_t;
typedef struct {
    long __sig;
    char __opaque[DARWIN_WIDTH(36, 56)];
} pthread_attr_t;
DARWIN_RECORD(pthread_attr_t, 40, 64, long);
typedef struct {
    long __sig;
    char __opaque[DARWIN_WIDTH(40, 56)];
} pthread_mutex_t;
DARWIN_RECORD(pthread_mutex_t, 44, 64, long);
typedef struct {
    long __sig;
    char __opaque[8];
} pthread_mutexattr_t;
DARWIN_RECORD(pthread_mutexattr_t, 12, 16, long);
typedef struct {
    long __sig;
    char __opaque[DARWIN_WIDTH(24, 40)];
} pthread_cond_t;
DARWIN_RECORD(pthread_cond_t, 28, 48, long);
typedef struct {
    long __sig;
    char __opaque[DARWIN_WIDTH(4, 8)];
} pthread_condattr_t;
DARWIN_RECORD(pthread_condattr_t, 8, 16, long);
typedef struct {
    long __sig;
    char __opaque[DARWIN_WIDTH(4, 8)];
} pthread_once_t;
DARWIN_RECORD(pthread_once_t, 8, 16, long);
#define PTHREAD_MUTEX_INITIALIZER \
    {                             \
        0x32AAABA7, {             \
            0                     \
        }                         \
    }
#define PTHREAD_COND_INITIALIZER \
    {                            \
        0x3CB0B1BB, {            \
            0                    \
        }                        \
    }
#define PTHREAD_ONCE_INIT \
    {                     \
        0x30B1BCBA, {     \
            0             \
        }                 \
    }
#define PTHREAD_MUTEX_RECURSIVE 2
DARWIN_C_BEGIN
int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
int pthread_join(pthread_t, void**) DARWIN_UNIX2003("pthread_join");
int pthread_detach(pthread_t);
pthread_t pthread_self(void);
int pthread_equal(pthread_t, pthread_t);
int pthread_mutex_init(pthread_mutex_t*, const pthread_mutexattr_t*);
int pthread_mutex_destroy(pthread_mutex_t*);
int pthread_mutex_lock(pthread_mutex_t*);
int pthread_mutex_trylock(pthread_mutex_t*);
int pthread_mutex_unlock(pthread_mutex_t*);
int pthread_mutexattr_init(pthread_mutexattr_t*);
int pthread_mutexattr_settype(pthread_mutexattr_t*, int);
int pthread_mutexattr_destroy(pthread_mutexattr_t*);
int pthread_cond_wait(pthread_cond_t*, pthread_mutex_t*) DARWIN_UNIX2003("pthread_cond_wait");
int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const struct timespec*)
    DARWIN_UNIX2003("pthread_cond_timedwait");
int pthread_cond_timedwait_relative_np(pthread_cond_t*, pthread_mutex_t*, const struct timespec*);
int pthread_cond_signal(pthread_cond_t*);
int pthread_cond_broadcast(pthread_cond_t*);
int pthread_cond_destroy(pthread_cond_t*);
int pthread_once(pthread_once_t*, void (*)(void));
int pthread_key_create(pthread_key_t*, void (*)(void*));
int pthread_key_delete(pthread_key_t);
void* pthread_getspecific(pthread_key_t);
int pthread_setspecific(pthread_key_t, const void*);
DARWIN_C_END
