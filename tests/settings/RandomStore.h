// Random stores and texts for tests of general properties. The seed is fixed and is shown when a test fails.
#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "settings/Properties.h"

namespace dovrel::test {

class RandomStore {
  public:
    static constexpr uint32_t kSeed = 20'261'115;

    /// Each round of a test has its own random sequence.
    explicit RandomStore(uint32_t round) : random_(kSeed + round) {}

    /// Returns up to 20 entries of all types. Keys and texts consist of all bytes that a line can contain.
    Properties store();

    /// Returns bytes that a line can contain: no line feed, and no blank or tab at the ends.
    std::string lineText();

    std::string bytes();
    uint32_t below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }

  private:
    int32_t integer();

    std::mt19937 random_;
};

}  // namespace dovrel::test
