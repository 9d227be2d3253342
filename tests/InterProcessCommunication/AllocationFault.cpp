#include "tests/InterProcessCommunication/AllocationFault.h"

#include <cstdlib>
#include <new>

extern "C" {
void* __real_malloc(size_t size);
void* __real_realloc(void* block, size_t size);
}

namespace {

bool armed = false;
bool hasHappened = false;
bool lasts = false;
size_t left = 0;

// Must not ask for memory itself.
bool admits() {
    if (!armed) return true;
    if (hasHappened) return !lasts;
    if (left > 1) {
        --left;
        return true;
    }
    hasHappened = true;
    return false;
}

void* allocate(size_t size) noexcept {
    return admits() ? __real_malloc(size == 0 ? 1 : size) : nullptr;
}

void* allocateOrThrow(size_t size) {
    if (void* const block = allocate(size)) return block;
    throw std::bad_alloc();
}

}  // namespace

namespace dovrel::test {

AllocationFault::AllocationFault(size_t nth, Duration duration) {
    left = nth;
    lasts = duration == Duration::forGood;
    hasHappened = false;
    armed = true;
}

AllocationFault::~AllocationFault() {
    armed = false;
}

bool AllocationFault::happened() {
    return hasHappened;
}

}  // namespace dovrel::test

extern "C" {

void* __wrap_malloc(size_t size) {
    return admits() ? __real_malloc(size) : nullptr;
}

void* __wrap_realloc(void* block, size_t size) {
    return admits() ? __real_realloc(block, size) : nullptr;
}
}

// All forms, because a sanitizer brings forms of its own that do not end in ours.
void* operator new(size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](size_t size) {
    return allocateOrThrow(size);
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
