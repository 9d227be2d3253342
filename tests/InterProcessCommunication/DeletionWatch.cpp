#include "tests/InterProcessCommunication/DeletionWatch.h"

#include <cstdlib>
#include <new>

namespace dovrel::test {

namespace {

DeletionWatch* newestWatch = nullptr;

}  // namespace

DeletionWatch::DeletionWatch() : next_(newestWatch) {
    newestWatch = this;
}

DeletionWatch::~DeletionWatch() {
    newestWatch = next_;
}

void DeletionWatch::add(const void* object) {
    if (object != nullptr) objects_.insert(object);
}

void DeletionWatch::notice(const void* block) noexcept {
    // Erasing an address also deletes: it frees the set's node. No watch waits for that node.
    for (DeletionWatch* watch = newestWatch; watch != nullptr; watch = watch->next_) {
        const auto found = watch->objects_.find(block);
        if (found == watch->objects_.end()) continue;
        ++watch->deletions_;
        watch->objects_.erase(found);
    }
}

void DeletionWatch::noticeNew(void* block, std::size_t size) {
    for (DeletionWatch* watch = newestWatch; watch != nullptr; watch = watch->next_)
        if (watch->sizeToAdd_ == size) watch->add(block);
}

}  // namespace dovrel::test

// All forms are defined, because those of a sanitizer do not call ours.
namespace {

void* allocate(std::size_t size) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
    void* const block = allocate(size);
    if (block == nullptr) throw std::bad_alloc();
    dovrel::test::DeletionWatch::noticeNew(block, size);
    return block;
}

void release(void* block) noexcept {
    dovrel::test::DeletionWatch::notice(block);
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    release(block);
}
