// Implements every operator new with malloc, which the linker redirects to HeapWatch.
#include <cstdlib>
#include <new>

namespace {

void* allocate(size_t size) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(size_t size) {
    if (void* const block = allocate(size)) return block;
    throw std::bad_alloc();
}

}  // namespace

// All forms are defined, because those of a sanitizer do not call ours.
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
