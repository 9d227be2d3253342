#include "platform/random/MD5Random.h"

namespace dovrel {

namespace {

constexpr uint8_t kSeedFiller = 0xA5;

}  // namespace

void MD5Random::seed(uint32_t value) {
    message_ = MD5();
    pool_.fill(kSeedFiller);
    for (uint32_t i = 0; i < 4; ++i)
        pool_[i] = static_cast<uint8_t>(value >> (8 * i) & 0xFF);
}

uint32_t MD5Random::nextBit() {
    if (bitIndex_ == kBitsOfPool) {
        renewPool();
        bitIndex_ = 0;
    }
    const uint32_t bit = pool_[bitIndex_ / 8] >> (bitIndex_ % 8) & 1u;
    ++bitIndex_;
    return bit;
}

uint32_t MD5Random::next32() {
    renewPool();
    bitIndex_ = 32;
    return pool_[0] | uint32_t{pool_[1]} << 8 | uint32_t{pool_[2]} << 16 | uint32_t{pool_[3]} << 24;
}

void MD5Random::renewPool() {
    message_.update(pool_.data(), pool_.size());
    pool_ = message_.digest();
}

}  // namespace dovrel
