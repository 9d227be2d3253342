// Threads that should block inside a platform call, and functions that detect that they do.
#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <system_error>
#include <thread>

#include "tests/support/WaitUntil.h"

/// How long a test waits for something that must happen before it gives up.
constexpr std::chrono::seconds kLongEnough{60};

/// Runs `call` on a new thread.
template <class Call>
auto inThread(Call call) {
    return std::async(std::launch::async, std::move(call));
}

/// Returns the result of a call that must return; ends the program if it does not.
template <class Result>
Result takeResult(std::future<Result>& pending) {
    if (pending.wait_for(kLongEnough) != std::future_status::ready) std::terminate();
    return pending.get();
}

/// Returns true if all threads except the caller sleep, as far as the system shows it.
inline bool allOthersSleep(const std::filesystem::path& threads) {
    const std::string own = std::filesystem::read_symlink("/proc/thread-self").filename();
    std::error_code gone;
    for (const auto& thread : std::filesystem::directory_iterator(threads, gone)) {
        if (thread.path().filename() == own) continue;
        std::ifstream file(thread.path() / "stat");
        std::string text((std::istreambuf_iterator<char>(file)), {});
        const size_t nameEnd = text.rfind(')');
        if (nameEnd == std::string::npos) continue;  // the thread has just ended
        if (text.compare(nameEnd, 3, ") S") != 0) return false;
    }
    return !gone;
}

/// Returns when all other threads block. If the system does not show that, it waits for a
/// time that is always long enough.
inline void untilAllOthersWait() {
    const std::filesystem::path threads = "/proc/self/task";
    if (!std::filesystem::exists(threads)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        return;
    }
    if (!dovrel::test::waitUntil([&threads] { return allOthersSleep(threads); })) std::terminate();
}

/// Returns how long `call` takes.
template <class Call>
std::chrono::steady_clock::duration measureDuration(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::steady_clock::now() - start;
}
