#include "macho/imports/MutexCalls.h"

#include <pthread.h>

#include <cstdlib>

namespace dovrel::macho {

namespace {

// On macOS a mutex is a word, the signature, followed by 56 (32-bit: 40) bytes, which are zero in an unused
// mutex. These zero bytes are an unused mutex of this system.
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
