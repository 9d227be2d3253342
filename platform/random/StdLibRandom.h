// StdLibRandom: random bits from the standard library's rand, whose state belongs to the process.
#pragma once

#include "platform/random/BaseRandom.h"

namespace dovrel {

class StdLibRandom : public BaseRandom {
  public:
    /// Bits that are left of the last drawn value are still handed out.
    void seed(uint32_t value) override;

    /// The low 15 bits of each drawn value, lowest first.
    uint32_t nextBit() override;

    /// Three drawn values, 15 bits apart.
    uint32_t next32() override;

  private:
    static constexpr uint32_t kBitsOfValue = 15;  // the least that the standard promises of every library

    uint32_t value_ = 0;
    uint32_t bitIndex_ = kBitsOfValue;
};

}  // namespace dovrel
