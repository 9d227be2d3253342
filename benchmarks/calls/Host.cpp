#include "Host.h"

#include <pthread.h>

#include <chrono>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "Caller.h"

namespace dovrel::benchmarks {

namespace {

constexpr size_t kFewestCalls = 10;  // per thread, even if they take longer than the case asks for
constexpr size_t kMostCalls = 100000;
constexpr size_t kFewestWarmUpCalls = 3;

// All processes have the same clock.
double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The threads of one host, which share its client.
class CallingThreads {
  public:
    explicit CallingThreads(const Case& measured) : case_(measured), client_(kPeer.connect(measured.folder)) {
        pthread_barrier_init(&warm_, nullptr, static_cast<unsigned>(case_.threads));
        pthread_barrier_init(&begin_, nullptr, static_cast<unsigned>(case_.threads));
    }
    CallingThreads(const CallingThreads&) = delete;
    CallingThreads& operator=(const CallingThreads&) = delete;
    ~CallingThreads() {
        pthread_barrier_destroy(&warm_);
        pthread_barrier_destroy(&begin_);
    }

    // Throws the failure of the first thread that failed.
    HostTimes measure(const std::function<void()>& ready) {
        std::vector<std::thread> others;
        for (int i = 1; i < case_.threads; ++i)
            others.emplace_back([this] { callInThisThread([] {}); });
        HostTimes times;
        callInThisThread([&] {
            if (!failure_) ready();
            times.begin = secondsNow();
        });
        for (std::thread& other : others)
            other.join();
        if (failure_) std::rethrow_exception(failure_);
        times.end = secondsNow();
        times.nanoseconds = std::move(nanoseconds_);
        return times;
    }

  private:
    // `between` runs when all threads have warmed up and none has begun to measure.
    void callInThisThread(const std::function<void()>& between) {
        Caller caller(case_.size);
        std::vector<double> times;
        times.reserve(kMostCalls);
        keepingFailure([&] { callFor(case_.seconds / 4, kFewestWarmUpCalls, caller, times); });
        pthread_barrier_wait(&warm_);
        keepingFailure(between);
        pthread_barrier_wait(&begin_);
        times.clear();
        if (!failure_) keepingFailure([&] { callFor(case_.seconds, kFewestCalls, caller, times); });
        const std::lock_guard<std::mutex> lock(results_);
        nanoseconds_.insert(nanoseconds_.end(), times.begin(), times.end());
    }

    void callFor(double seconds, size_t fewest, Caller& caller, std::vector<double>& times) {
        const bool inTurn = case_.threads > 1 && kPeer.threads == Threads::inTurn;
        const double end = secondsNow() + seconds;
        while (times.size() < fewest || (times.size() < kMostCalls && secondsNow() < end)) {
            if (case_.pause.count() > 0) std::this_thread::sleep_for(case_.pause);
            times.push_back(caller.time([&](Bytes request) {
                const auto lock =
                    inTurn ? std::unique_lock<std::mutex>(turn_) : std::unique_lock<std::mutex>();
                return client_->call(request);
            }));
        }
    }

    void keepingFailure(const std::function<void()>& work) {
        try {
            work();
        } catch (...) {
            const std::lock_guard<std::mutex> lock(results_);
            if (!failure_) failure_ = std::current_exception();
        }
    }

    const Case& case_;
    std::unique_ptr<Client> client_;
    pthread_barrier_t warm_;
    pthread_barrier_t begin_;
    std::mutex turn_;
    std::mutex results_;  // for the members below
    std::vector<double> nanoseconds_;
    std::exception_ptr failure_;
};

}  // namespace

HostTimes measureHost(const Case& measured, const std::function<void()>& ready) {
    return CallingThreads(measured).measure(ready);
}

}  // namespace dovrel::benchmarks
