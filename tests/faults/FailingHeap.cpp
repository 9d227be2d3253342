// Replaces the allocation functions of the C library, for this program and everything that it loads. Requests
// fail as the fault in effect says. The bytes in use are counted.
#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstddef>

#include "tests/faults/Fault.h"

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* block);

}  // extern "C"

namespace {

std::atomic<size_t> inUse{0};

void* counted(void* block) {
    if (block != nullptr) inUse += malloc_usable_size(block);
    return block;
}

bool isRefused() {
    if (dovrel::test::strike("malloc") == 0) return false;
    errno = ENOMEM;
    return true;
}

void* allocateAligned(size_t alignment, size_t size) {
    return isRefused() ? nullptr : counted(__libc_memalign(alignment, size));
}

}  // namespace

extern "C" {

void* malloc(size_t size) noexcept {
    return isRefused() ? nullptr : counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) noexcept {
    return isRefused() ? nullptr : counted(__libc_calloc(count, size));
}

void* realloc(void* block, size_t size) noexcept {
    if (isRefused()) return nullptr;
    const size_t before = block == nullptr ? 0 : malloc_usable_size(block);
    void* const moved = __libc_realloc(block, size);
    if (moved != nullptr || size == 0) inUse -= before;
    return counted(moved);
}

void* memalign(size_t alignment, size_t size) noexcept {
    return allocateAligned(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) noexcept {
    return allocateAligned(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) noexcept {
    void* const made = allocateAligned(alignment, size);
    if (made == nullptr) return ENOMEM;
    *block = made;
    return 0;
}

void free(void* block) noexcept {
    if (block != nullptr) inUse -= malloc_usable_size(block);
    __libc_free(block);
}

}  // extern "C"

namespace dovrel::test {

size_t heapInUse() {
    return inUse;
}

}  // namespace dovrel::test
