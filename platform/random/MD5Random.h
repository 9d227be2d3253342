// MD5Random: random bits from a chain of MD5 digests.
//
// A pool of 16 bytes is added to a message that never ends; the digest of the message so far is the next
// pool.
#pragma once

#include "platform/random/BaseRandom.h"
#include "platform/random/MD5.h"

namespace dovrel {

class MD5Random : public BaseRandom {
  public:
    /// Restarts the message and the pool. Where the next bit is taken from does not change: bits that are
    /// left are those of the new pool, before its first digest.
    void seed(uint32_t value) override;

    /// The next bit of the pool, the lowest bit of each byte first; when all 128 are used up, of a new pool.
    uint32_t nextBit() override;

    /// The first four bytes of a new pool. The next bit is the one behind them.
    uint32_t next32() override;

  private:
    static constexpr uint32_t kBitsOfPool = 128;

    void renewPool();

    MD5 message_;
    MD5::Digest pool_{};
    uint32_t bitIndex_ = kBitsOfPool;
};

}  // namespace dovrel
