#include "macho/imports/MutexCalls.h"

#include <pthread.h>

#include <cstdlib>

namespace dovrel::macho {

namespace {

// On macOS a mutex is a word (the signature), followed by 56 bytes (40 in 32-bit programs), which are zero in
// an unused mutex. On this system such zero bytes are a valid, unused mutex.
pthread_mutex_t* systemMutex(void* mutex) {
    static_assert(sizeof(pthread_mutex_t) <= (sizeof(void*) == 8 ? 56 : 40));
    return reinterpret_cast<pthread_mutex_t*>(static_cast<char*>(mutex) + sizeof(long));
}

}  // namespace

void platformMutexLock(void* mutex) {
    if (pthread_mutex_lock(systemMutex(mutex)) != 0) std::abort();
}

bool platformMutexTryLock(void* mutex) {
    return pthread_mutex_trylock(systemMutex(mutex)) == 0;
}

void platformMutexUnlock(void* mutex) {
    if (pthread_mutex_unlock(systemMutex(mutex)) != 0) std::abort();
}

void platformMutexDestroy(void* mutex) {
    pthread_mutex_destroy(systemMutex(mutex));
}

}  // namespace dovrel::macho
