// Loads the second module from its own folder:
//
//     probe THREADS
//         Several threads ask for the module's functions at the same moment, and use Foundation if they get them.
//         Writes one line for each different result: "loaded" or "none".
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <set>
#include <thread>
#include <vector>

#include "bundle/FoundationModule.h"

namespace {

// Asks Foundation whether the main thread is in its loop, which it is not.
void useFoundation(const portability::FoundationEntries& entries) {
    void* unused = nullptr;
    if (entries.runOnMainRunLoop([](void* parameter) { return parameter; }, nullptr, &unused)) std::abort();
}

}  // namespace

int main(int, char** arguments) {
    const auto count = static_cast<size_t>(std::atoi(arguments[1]));
    std::vector<const portability::FoundationEntries*> results(count);
    std::atomic<size_t> waiting{count};
    std::vector<std::thread> threads;
    for (auto& result : results) {
        threads.emplace_back([&waiting, &result] {
            --waiting;
            while (waiting > 0) {
            }
            result = portability::foundationEntries();
            if (result != nullptr) useFoundation(*result);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const auto* result : std::set<const portability::FoundationEntries*>(results.begin(), results.end()))
        std::cout << (result != nullptr ? "loaded" : "none") << std::endl;
}
