// BaseRandom: the interface of a source of random bits and words. Not for secrets. Not thread-safe.
#pragma once

#include <cstdint>

namespace dovrel {

class BaseRandom {
  public:
    virtual ~BaseRandom() = default;

    /// Restarts the source with the sequence for the seed `value`.
    virtual void seed(uint32_t value) = 0;

    /// Returns 0 or 1.
    virtual uint32_t nextBit() = 0;

    virtual uint32_t next32() = 0;
};

}  // namespace dovrel
