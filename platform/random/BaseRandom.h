// BaseRandom: a source of random bits and words. Not for secrets. One thread at a time.
#pragma once

#include <cstdint>

namespace dovrel {

class BaseRandom {
  public:
    virtual ~BaseRandom() = default;

    /// Starts the sequence that belongs to `value`.
    virtual void seed(uint32_t value) = 0;

    /// 0 or 1.
    virtual uint32_t nextBit() = 0;

    virtual uint32_t next32() = 0;
};

}  // namespace dovrel
