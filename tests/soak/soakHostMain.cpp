// A host of the soak: soak_host LIBRARY NAME THREADS SEED CONSOLE
//
// Opens and closes sessions; in each of them every thread makes checked calls. Ends when standard input is closed,
// after the session that is open then. It then prints a SoakReport to standard output. The library's own
// output goes to the file CONSOLE.
#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <sstream>
#include <thread>
#include <vector>

#include "tests/soak/CheckedCalls.h"

namespace {

using dovrel::test::CheckedCalls;
using dovrel::test::PosLibrary;
using dovrel::test::SoakReport;

constexpr int kCallsOfThread = 100;  // in a session
// Later sessions are compared with this one: by then the process has everything that it creates only once.
constexpr uint64_t kFirstMeasured = 5;

bool shallEnd() {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) > 0;
}

uint64_t countDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<uint64_t>(std::distance(begin(all), end(all)));
}

void add(SoakReport& sum, const SoakReport& report) {
    sum.right += report.right;
    sum.failed += report.failed;
    sum.wrong += report.wrong;
    sum.longest = std::max(sum.longest, report.longest);
}

void runSession(const PosLibrary& library, const std::string& name, int threads, uint32_t seed,
                SoakReport& sum) {
    library.InitializePOS();
    std::deque<CheckedCalls> callers;
    for (int thread = 0; thread < threads; ++thread)
        callers.emplace_back(library, name + '.' + std::to_string(thread),
                             seed + static_cast<uint32_t>(thread));
    std::vector<std::thread> running;
    for (CheckedCalls& caller : callers) {
        running.emplace_back([&caller] {
            for (int call = 0; call < kCallsOfThread; ++call)
                caller.next();
        });
    }
    for (std::thread& thread : running)
        thread.join();
    for (const CheckedCalls& caller : callers)
        add(sum, caller.report());
    library.TerminatePOS();
    ++sum.sessions;
}

int redirectConsole(const char* file) {
    const int console = open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int output = dup(STDOUT_FILENO);
    dup2(console, STDOUT_FILENO);
    dup2(console, STDERR_FILENO);
    return output;
}

}  // namespace

int main(int, char** arguments) {
    mallopt(M_ARENA_MAX, 1);  // mallinfo2 counts only one arena
    const int output = redirectConsole(arguments[5]);
    const PosLibrary library(arguments[1]);
    if (!library.isComplete()) return 2;
    const int threads = std::atoi(arguments[3]);
    uint32_t seed = static_cast<uint32_t>(std::strtoul(arguments[4], nullptr, 10));
    SoakReport report;
    while (!shallEnd() || report.sessions <= kFirstMeasured) {
        runSession(library, arguments[2], threads, seed, report);
        seed += static_cast<uint32_t>(threads);
        report.heapAfter = mallinfo2().uordblks;
        report.descriptorsAfter = countDescriptors();
        if (report.sessions > kFirstMeasured) continue;
        report.heapBefore = report.heapAfter;
        report.descriptorsBefore = report.descriptorsAfter;
    }
    std::ostringstream line;
    line << report << '\n';
    const std::string text = line.str();
    return write(output, text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 2;
}
