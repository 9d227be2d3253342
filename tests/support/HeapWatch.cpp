#include "tests/support/HeapWatch.h"

#include <utility>

namespace {

dovrel::test::HeapWatch* watching = nullptr;

// Requests that the watch itself makes are not counted.
bool admits(size_t bytes) {
    dovrel::test::HeapWatch* const watch = std::exchange(watching, nullptr);
    const bool admitted = watch == nullptr || watch->admits(bytes);
    watching = watch;
    return admitted;
}

}  // namespace

extern "C" {

void* __real_malloc(size_t bytes);
void* __real_realloc(void* block, size_t bytes);

// Visible, because the linker also redirects the calls of a library that is linked with the test.
__attribute__((visibility("default"))) void* __wrap_malloc(size_t bytes) {
    return admits(bytes) ? __real_malloc(bytes) : nullptr;
}

__attribute__((visibility("default"))) void* __wrap_realloc(void* block, size_t bytes) {
    return admits(bytes) ? __real_realloc(block, bytes) : nullptr;
}

}  // extern "C"

namespace dovrel::test {

HeapWatch::HeapWatch() {
    watching = this;
}

HeapWatch::~HeapWatch() {
    watching = nullptr;
}

void HeapWatch::failFrom(size_t nth) {
    counted_ = 0;
    firstOfAll_ = nth;
}

void HeapWatch::failAt(std::set<size_t> requests) {
    counted_ = 0;
    single_ = std::move(requests);
}

void HeapWatch::refuse(size_t nth, Refusal refusal) {
    refusal == Refusal::kOnce ? failAt({nth}) : failFrom(nth);
}

bool HeapWatch::admits(size_t bytes) {
    requests_.push_back(bytes);
    ++counted_;
    const bool admitted = counted_ < firstOfAll_ && single_.count(counted_) == 0;
    if (!admitted) hasRefused_ = true;
    return admitted;
}

}  // namespace dovrel::test
