#include "platform/random/StdLibRandom.h"

#include <cstdlib>

namespace dovrel {

namespace {

uint32_t draw() {
    return static_cast<uint32_t>(std::rand());
}

}  // namespace

void StdLibRandom::seed(uint32_t value) {
    std::srand(value);
}

uint32_t StdLibRandom::nextBit() {
    if (bitIndex_ == kBitsOfValue) {
        value_ = draw();
        bitIndex_ = 0;
    }
    return value_ >> bitIndex_++ & 1u;
}

uint32_t StdLibRandom::next32() {
    const uint32_t first = draw();
    const uint32_t second = draw();
    const uint32_t third = draw();
    return first | second << kBitsOfValue | third << (2 * kBitsOfValue);
}

}  // namespace dovrel
