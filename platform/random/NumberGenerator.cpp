#include "platform/random/NumberGenerator.h"

#include <chrono>
#include <memory>

#include "platform/time/Clock.h"

namespace dovrel {

namespace {

constexpr uint32_t kSeedMultiplier = 69069;
constexpr uint32_t kDefaultSeed = 4357;
constexpr uint32_t kSeedInsteadOfZero = 45678;

constexpr size_t kMiddle = 397;
constexpr uint32_t kUpperMask = 0x80000000;
constexpr uint32_t kLowerMask = 0x7FFFFFFF;
constexpr uint32_t kMatrix = 0x9908B0DF;

// Returns a word of the next generation. `middle` is the word kMiddle places after `word`.
uint32_t twist(uint32_t word, uint32_t successor, uint32_t middle) {
    const uint32_t joined = (word & kUpperMask) | (successor & kLowerMask);
    return middle ^ joined >> 1 ^ ((successor & 1u) != 0 ? kMatrix : 0u);
}

// Returns a word that differs between two constructor calls within one second, and between processes.
uint64_t varyingWord() {
    const auto fresh = std::make_unique<uint64_t>();
    const auto ticks = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    return ticks ^ reinterpret_cast<uintptr_t>(fresh.get());
}

}  // namespace

std::array<uint32_t, NumberGenerator::kWords> NumberGenerator::words_;
size_t NumberGenerator::index_ = NumberGenerator::kNeverSeeded;

NumberGenerator::NumberGenerator(uint32_t argument) {
    seed(constructorSeed(argument, currentTime(), varyingWord()));
}

uint32_t NumberGenerator::constructorSeed(uint32_t argument, int64_t seconds, uint64_t word) {
    const auto sum = static_cast<int64_t>(static_cast<uint64_t>(seconds) + word);
    const auto seed = static_cast<uint32_t>(argument + static_cast<uint64_t>(sum % 99999) + 120);
    return seed != 0 ? seed : kSeedInsteadOfZero;
}

void NumberGenerator::seed(uint32_t value) {
    for (uint32_t& word : words_) {
        word = value;
        value *= kSeedMultiplier;
    }
    index_ = kWords;
}

void NumberGenerator::regenerate() {
    if (index_ == kNeverSeeded) seed(kDefaultSeed);
    auto& w = words_;
    constexpr size_t kBeforeWrap = kWords - kMiddle;
    for (size_t i = 0; i < kBeforeWrap; ++i)
        w[i] = twist(w[i], w[i + 1], w[i + kMiddle]);
    for (size_t i = kBeforeWrap; i < kWords - 1; ++i)
        w[i] = twist(w[i], w[i + 1], w[i - kBeforeWrap]);
    w[kWords - 1] = twist(w[kWords - 1], w[0], w[kMiddle - 1]);
    index_ = 0;
}

}  // namespace dovrel
