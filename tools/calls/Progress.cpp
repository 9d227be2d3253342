#include "tools/calls/Progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <iterator>

#include "tools/Terminal.h"

namespace dovrel::tools {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr auto kUntilFirstLine = std::chrono::milliseconds(500);
constexpr auto kBetweenLines = std::chrono::milliseconds(100);
constexpr char kEraseLine[] = "\r\x1b[K";

}  // namespace

std::string sizeText(double bytes) {
    static constexpr const char* kUnits[] = {"bytes", "KiB", "MiB", "GiB"};
    size_t unit = 0;
    for (; bytes >= 1024 && unit + 1 < std::size(kUnits); ++unit)
        bytes /= 1024;
    char text[32];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, kUnits[unit]);
    return text;
}

Progress::Progress(const std::string& activity) : activity_(activity) {
    if (isTerminal(STDERR_FILENO)) thread_ = std::thread([this] { show(); });
}

Progress::~Progress() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard<std::mutex> held(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void Progress::setActivity(const std::string& activity) {
    if (!thread_.joinable()) return;
    const std::lock_guard<std::mutex> held(mutex_);
    activity_ = activity;
}

void Progress::show() {
    const Clock::time_point start = Clock::now();
    bool isShown = false;
    std::unique_lock<std::mutex> held(mutex_);
    const auto isEnding = [this] { return isEnding_; };
    for (auto pause = kUntilFirstLine; !changed_.wait_for(held, pause, isEnding); pause = kBetweenLines) {
        const double seconds = Seconds(Clock::now() - start).count();
        std::fprintf(stderr, "%s%s, %.1f s", kEraseLine, activity_.c_str(), seconds);
        std::fflush(stderr);
        isShown = true;
    }
    if (isShown) std::fputs(kEraseLine, stderr);
}

}  // namespace dovrel::tools
