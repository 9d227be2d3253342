#include "portability/appleevents/CallQueue.h"

#include <chrono>
#include <utility>

namespace portability {

namespace {

constexpr std::chrono::seconds kLongestHandover{1};

}  // namespace

// A queued call. It is on the stack of the thread that waits for it.
struct CallQueue::Call {
    Procedure procedure;
    void* parameter;
    void* result = nullptr;
    enum class State { waiting, begun, returned, givenBack } state = State::waiting;
    Call* next = nullptr;
};

void CallQueue::open() {
    std::lock_guard<std::mutex> lock(mutex_);
    isOpen_ = true;
}

void CallQueue::close() {
    std::lock_guard<std::mutex> lock(mutex_);
    isOpen_ = false;
    for (Call* call = oldest_.exchange(nullptr); call != nullptr; call = call->next)
        call->state = Call::State::givenBack;
    changed_.notify_all();
}

bool CallQueue::isOpen() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return isOpen_;
}

bool CallQueue::run(Procedure procedure, void* parameter, void** result, void (*wakeLoop)()) {
    Call call{procedure, parameter};
    std::unique_lock<std::mutex> lock(mutex_);
    if (!isOpen_) return false;
    append(call);
    lock.unlock();
    wakeLoop();
    lock.lock();
    const auto limit = std::chrono::steady_clock::now() + kLongestHandover;
    changed_.wait_until(lock, limit, [&call] { return call.state != Call::State::waiting; });
    if (remove(call)) return false;
    changed_.wait(lock, [&call] { return call.state != Call::State::begun; });
    if (call.state != Call::State::returned) return false;
    *result = call.result;
    return true;
}

void CallQueue::append(Call& call) {
    Call* last = oldest_.load();
    while (last != nullptr && last->next != nullptr)
        last = last->next;
    if (last == nullptr) {
        oldest_.store(&call);
    } else {
        last->next = &call;
    }
}

// Returns false if the call is not in the queue.
bool CallQueue::remove(const Call& call) {
    Call* previous = nullptr;
    Call* found = oldest_.load();
    while (found != nullptr && found != &call)
        previous = std::exchange(found, found->next);
    if (found == nullptr) return false;
    if (previous == nullptr) {
        oldest_.store(call.next);
    } else {
        previous->next = call.next;
    }
    return true;
}

void CallQueue::serveOldest() {
    std::unique_lock<std::mutex> lock(mutex_);
    if (!hasCalls()) return;
    Call& call = *oldest_.load();
    oldest_.store(call.next);
    call.state = Call::State::begun;
    changed_.notify_all();
    lock.unlock();
    void* const result = call.procedure(call.parameter);
    lock.lock();
    call.result = result;
    call.state = Call::State::returned;
    changed_.notify_all();
}

}  // namespace portability
