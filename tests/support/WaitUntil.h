// Waits for a condition instead of a fixed time.
#pragma once

#include <chrono>
#include <thread>

namespace dovrel::test {

/// Checks the condition every few milliseconds until it holds. Returns false if it
/// does not hold within a minute.
template <typename Condition>
bool waitUntil(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace dovrel::test
