// StdLibRandom: random bits from `rand()` of the standard library, whose state is
// shared by the whole process.
#pragma once

#include "platform/random/BaseRandom.h"

namespace dovrel {

class StdLibRandom : public BaseRandom {
  public:
    /// Seeds `rand()`. Unused bits of the last drawn value are still returned first.
    void seed(uint32_t value) override;

    /// Returns the next bit of a drawn value, lowest bit first. Draws a new value after 15 bits.
    uint32_t nextBit() override;

    /// Combines three drawn values, shifted by 0, 15 and 30 bits.
    uint32_t next32() override;

  private:
    static constexpr uint32_t kBitsOfValue = 15;  // the standard guarantees at least 15 bits

    uint32_t value_ = 0;
    uint32_t bitIndex_ = kBitsOfValue;
};

}  // namespace dovrel
