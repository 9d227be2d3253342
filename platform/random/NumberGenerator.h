// NumberGenerator: the Mersenne Twister MT19937 in its version of 1998.
//
// There is one state for the whole process, and every constructor seeds it again. The static functions work
// without an object; a state that was never seeded is seeded with 4357. Not thread-safe. Not for secrets.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace dovrel {

class NumberGenerator {
  public:
    /// Seeds the state from `argument`, the calendar time and a word that varies from call to call.
    explicit NumberGenerator(uint32_t argument);
    virtual ~NumberGenerator() = default;

    /// Seeds the state. With the seed 0, every output is 0.
    static void seed(uint32_t value);

    /// Returns the next 32 random bits.
    static uint32_t next() {
        if (index_ >= kWords) regenerate();
        return temper(words_[index_++]);
    }

    /// Returns a number from 1000 to 100998.
    static uint32_t nextNumber() { return next() % 99999 + 1000; }

    /// Returns the seed that the constructor uses at the calendar time `seconds` with the
    /// varying word `word`. Never 0.
    static uint32_t constructorSeed(uint32_t argument, int64_t seconds, uint64_t word);

  private:
    static constexpr size_t kWords = 624;
    static constexpr size_t kNeverSeeded = kWords + 1;

    static void regenerate();

    static uint32_t temper(uint32_t y) {
        y ^= y >> 11;
        y ^= y << 7 & 0x9D2C5680;
        y ^= y << 15 & 0xEFC60000;
        return y ^ y >> 18;
    }

    static std::array<uint32_t, kWords> words_;
    static size_t index_;  // index of the next word; kWords if all words are used
};

}  // namespace dovrel
