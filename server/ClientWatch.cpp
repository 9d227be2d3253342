#include "server/ClientWatch.h"

#include <chrono>

#include "server/SelfEvent.h"

namespace merrowd {

ClientWatch::~ClientWatch() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        over_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void ClientWatch::start() {
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
}

void ClientWatch::run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!changed_.wait_for(lock, std::chrono::seconds(1), [this] { return over_; })) {
        if (pending_.exchange(true)) continue;
        if (!sendToSelf(kTickEvent)) pending_ = false;
    }
}

}  // namespace merrowd
