#include "Measurements.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Caller.h"
#include "Host.h"
#include "Peer.h"
#include "Percentiles.h"
#include "PinnedProcess.h"
#include "RunningServer.h"
#include "Signal.h"

namespace dovrel::benchmarks {

namespace {

constexpr int kFirstCalls = 20;
constexpr double kNanosecondsPerMicrosecond = 1000;

std::string resultPath(const Case& measured, int host) {
    return measured.folder + "/host" + std::to_string(host);
}

void writeTimes(const std::string& path, const HostTimes& times) {
    std::ofstream file(path, std::ios::binary);
    const auto size = static_cast<std::streamsize>(times.nanoseconds.size() * sizeof(double));
    const double bounds[] = {times.begin, times.end};
    file.write(reinterpret_cast<const char*>(bounds), sizeof bounds);
    file.write(reinterpret_cast<const char*>(times.nanoseconds.data()), size);
    if (!file.flush().good()) throw std::runtime_error("cannot write " + path);
}

HostTimes readTimes(const std::string& path) {
    HostTimes times;
    std::ifstream file(path, std::ios::binary);
    double bounds[2] = {};
    file.read(reinterpret_cast<char*>(bounds), sizeof bounds);
    times.begin = bounds[0];
    times.end = bounds[1];
    double value = 0;
    while (file.read(reinterpret_cast<char*>(&value), sizeof value))
        times.nanoseconds.push_back(value);
    return times;
}

nlohmann::json figures(const std::vector<double>& nanoseconds) {
    return {{"calls", nanoseconds.size()},
            {"median_us", median(nanoseconds) / kNanosecondsPerMicrosecond},
            {"p99_us", percentile99(nanoseconds) / kNanosecondsPerMicrosecond}};
}

// Hosts in processes of their own, which begin to measure at the same time.
class Hosts {
  public:
    explicit Hosts(const Case& measured) : case_(measured) {
        for (int number = 0; number < case_.hosts; ++number) {
            ready_.push_back(std::make_unique<Signal>());
            processes_.emplace_back(case_.clientProcessor, [&] { run(number); });
            ready_.back()->onlyWait();  // also so that the next processes do not hold it open
        }
        begin_.onlyGive();
    }

    void measure() {
        for (const std::unique_ptr<Signal>& ready : ready_) {
            if (!ready->wait()) throw std::runtime_error("a host failed");
        }
        for (int i = 0; i < case_.hosts; ++i)
            begin_.give();
        for (PinnedProcess& process : processes_) {
            if (!process.succeeds()) throw std::runtime_error("a host failed");
        }
    }

  private:
    void run(int number) {
        begin_.onlyWait();
        writeTimes(resultPath(case_, number), measureHost(case_, [this] {
                       ready_.back()->give();
                       if (!begin_.wait()) throw std::runtime_error("the harness has ended");
                   }));
    }

    const Case& case_;
    std::vector<std::unique_ptr<Signal>> ready_;  // one per host
    Signal begin_;
    std::vector<PinnedProcess> processes_;
};

}  // namespace

nlohmann::json measureCalls(const Case& measured) {
    RunningServer server(measured);
    Hosts(measured).measure();
    server.expectRunning();
    std::vector<double> all;
    double begin = std::numeric_limits<double>::max();
    double end = 0;
    for (int number = 0; number < measured.hosts; ++number) {
        const HostTimes times = readTimes(resultPath(measured, number));
        all.insert(all.end(), times.nanoseconds.begin(), times.nanoseconds.end());
        begin = std::min(begin, times.begin);
        end = std::max(end, times.end);
    }
    nlohmann::json result = figures(all);
    result["calls_per_second"] = static_cast<double>(all.size()) / (end - begin);
    return result;
}

nlohmann::json measureFirstCalls(const Case& measured) {
    RunningServer server(measured);
    PinnedProcess host(measured.clientProcessor, [&] {
        HostTimes times;
        Caller caller(measured.size);
        for (int i = 0; i < kFirstCalls; ++i) {
            std::unique_ptr<Client> client;
            times.nanoseconds.push_back(caller.time([&](Bytes request) {
                client = kPeer.connect(measured.folder);
                return client->call(request);
            }));
        }
        writeTimes(resultPath(measured, 0), times);
    });
    if (!host.succeeds()) throw std::runtime_error("the host failed");
    server.expectRunning();
    return figures(readTimes(resultPath(measured, 0)).nanoseconds);
}

}  // namespace dovrel::benchmarks
