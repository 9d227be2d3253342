#include "tests/serialization/HeapWatch.h"

namespace {

dovrel::test::HeapWatch* watching = nullptr;

}  // namespace

extern "C" {

void* __real_malloc(size_t bytes);
void* __real_realloc(void* block, size_t bytes);

void* __wrap_malloc(size_t bytes) {
    if (watching != nullptr && !watching->admits(bytes)) return nullptr;
    return __real_malloc(bytes);
}

void* __wrap_realloc(void* block, size_t bytes) {
    if (watching != nullptr && !watching->admits(bytes)) return nullptr;
    return __real_realloc(block, bytes);
}

}  // extern "C"

namespace dovrel::test {

HeapWatch::HeapWatch() {
    watching = this;
}

HeapWatch::~HeapWatch() {
    watching = nullptr;
}

void HeapWatch::failOnce(size_t nth) {
    failFrom(nth);
    once_ = true;
}

bool HeapWatch::admits(size_t bytes) {
    requests_.push_back(bytes);
    if (allowed_ == kAll) return true;
    if (allowed_ > 0) {
        --allowed_;
        return true;
    }
    if (once_) allowed_ = kAll;
    return false;
}

}  // namespace dovrel::test
