// Starts a new process that calls once, and what that process does.
#include <link.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "Caller.h"
#include "Measurements.h"
#include "Peer.h"
#include "Percentiles.h"
#include "RunningServer.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

constexpr int kStarts = 5;
constexpr double kNanosecondsPerMillisecond = 1e6;

struct StartFigures {
    double processorTime = 0;  // nanoseconds
    double elapsedTime = 0;    // nanoseconds
    double residentSize = 0;   // KiB
    double libraries = 0;
};

double now(clockid_t clock) {
    timespec time;
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double residentKibibytes() {
    long pages = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr || std::fscanf(file, "%*d %ld", &pages) != 1)
        throw std::runtime_error("cannot read /proc/self/statm");
    std::fclose(file);
    return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

// Without the program and the kernel's own part.
int countLibraries() {
    int count = 0;
    dl_iterate_phdr(
        [](dl_phdr_info* info, size_t, void* counter) {
            const bool counts = *info->dlpi_name != '\0' && std::strncmp(info->dlpi_name, "linux-", 6) != 0;
            *static_cast<int*>(counter) += counts ? 1 : 0;
            return 0;
        },
        &count);
    return count;
}

StartFigures startProcess(const Case& measured, const std::string& result) {
    const std::string size = std::to_string(measured.size);
    const std::string begin = std::to_string(now(CLOCK_MONOTONIC));
    const char* const arguments[] = {"started",    kStartedProcessOption, measured.folder.c_str(),
                                     size.c_str(), begin.c_str(),         result.c_str(),
                                     nullptr};
    pid_t process = 0;
    errno = posix_spawn(&process, "/proc/self/exe", nullptr, nullptr, const_cast<char**>(arguments), environ);
    if (errno != 0) throw systemError("posix_spawn");
    int status = 0;
    if (waitpid(process, &status, 0) != process || status != 0)
        throw std::runtime_error("a started process failed");
    StartFigures figures;
    std::FILE* const file = std::fopen(result.c_str(), "r");
    const bool good =
        file != nullptr && std::fscanf(file, "%lf %lf %lf %lf", &figures.processorTime, &figures.elapsedTime,
                                       &figures.residentSize, &figures.libraries) == 4;
    if (file != nullptr) std::fclose(file);
    if (!good) throw std::runtime_error("a started process wrote no figures");
    return figures;
}

nlohmann::json medians(const std::vector<StartFigures>& all) {
    const auto medianOf = [&](double StartFigures::*figure) {
        std::vector<double> values;
        for (const StartFigures& figures : all)
            values.push_back(figures.*figure);
        return median(values);
    };
    return {{"calls", all.size()},
            {"cpu_ms", medianOf(&StartFigures::processorTime) / kNanosecondsPerMillisecond},
            {"elapsed_ms", medianOf(&StartFigures::elapsedTime) / kNanosecondsPerMillisecond},
            {"resident_kb", medianOf(&StartFigures::residentSize)},
            {"libraries", medianOf(&StartFigures::libraries)}};
}

}  // namespace

nlohmann::json measureStarts(const Case& measured) {
    RunningServer server(measured);
    pinToProcessor(measured.clientProcessor);  // the started processes inherit this
    std::vector<StartFigures> all;
    for (int i = 0; i < kStarts; ++i)
        all.push_back(startProcess(measured, measured.folder + "/start"));
    server.expectRunning();
    return medians(all);
}

int runStartedProcess(char** arguments) {
    const std::string folder = arguments[0];
    Caller caller(std::strtoull(arguments[1], nullptr, 10));
    const double begin = std::strtod(arguments[2], nullptr);
    StartFigures figures;
    std::unique_ptr<Client> client;
    caller.time([&](Bytes request) {
        client = kPeer.connect(folder);
        const Bytes reply = client->call(request);
        figures.processorTime = now(CLOCK_PROCESS_CPUTIME_ID);
        figures.elapsedTime = now(CLOCK_MONOTONIC) - begin;
        return reply;
    });
    figures.residentSize = residentKibibytes();
    figures.libraries = countLibraries();
    std::FILE* const file = std::fopen(arguments[3], "w");
    if (file == nullptr) throw systemError(arguments[3]);
    std::fprintf(file, "%f %f %f %f\n", figures.processorTime, figures.elapsedTime, figures.residentSize,
                 figures.libraries);
    if (std::fclose(file) != 0) throw systemError(arguments[3]);
    return EXIT_SUCCESS;
}

}  // namespace dovrel::benchmarks
