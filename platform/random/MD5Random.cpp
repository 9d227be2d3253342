#include "platform/random/MD5Random.h"

#include "serialization/ByteOrder.h"

namespace dovrel {

namespace {

constexpr uint8_t kSeedFiller = 0xA5;

}  // namespace

void MD5Random::seed(uint32_t value) {
    message_ = MD5();
    pool_.fill(kSeedFiller);
    storeLittleEndian32(pool_.data(), value);
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
    return loadLittleEndian32(pool_.data());
}

void MD5Random::renewPool() {
    message_.update(pool_.data(), pool_.size());
    pool_ = message_.digest();
}

}  // namespace dovrel
