// Waits for a condition in tests.
#pragma once

#include <chrono>
#include <thread>

/// Waits at most a minute until `condition` holds; returns true if it does.
template <typename Condition>
bool becomesTrue(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}
