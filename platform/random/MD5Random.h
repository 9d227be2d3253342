// MD5Random: random bits from a chain of MD5 digests.
//
// The pool holds 16 bytes. To renew it, they are appended to a message that never ends, and the digest of the
// message so far becomes the new pool.
#pragma once

#include "platform/random/BaseRandom.h"
#include "platform/random/MD5.h"

namespace dovrel {

class MD5Random : public BaseRandom {
  public:
    /// Restarts the message and refills the pool from `value`. The position of the next bit does not change. So
    /// if the old pool had unused bits, the bits at the same positions of the new pool come next. After them
    /// the pool is renewed for the first time.
    void seed(uint32_t value) override;

    /// Returns the next bit of the pool, from the lowest bit of each byte to the highest. Renews the pool
    /// after all 128 bits are used.
    uint32_t nextBit() override;

    /// Renews the pool and returns its first four bytes. nextBit() then continues with the bit after them.
    uint32_t next32() override;

  private:
    static constexpr uint32_t kBitsOfPool = 128;

    void renewPool();

    MD5 message_;
    MD5::Digest pool_{};
    uint32_t bitIndex_ = kBitsOfPool;
};

}  // namespace dovrel
