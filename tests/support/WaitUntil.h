// Waiting for a condition instead of for luck.
#pragma once

#include <chrono>
#include <thread>

namespace dovrel::test {

/// Asks every few milliseconds until the condition holds; false when it does not within half a minute.
template <typename Condition>
bool waitUntil(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

}  // namespace dovrel::test
