// The kinds of measurement. Each runs its own server.
#pragma once

#include <nlohmann/json.hpp>

#include "Case.h"

namespace dovrel::benchmarks {

/// Return the figures of one case. Throw std::runtime_error if the server or a host fails.

/// {"calls", "median_us", "p99_us", "calls_per_second"}: hosts that are connected call and call again.
nlohmann::json measureCalls(const Case& measured);

/// {"calls", "median_us", "p99_us"}: everything from connecting to the first reply, in a process that has
/// loaded what it needs.
nlohmann::json measureFirstCalls(const Case& measured);

/// {"calls", "cpu_ms", "elapsed_ms", "resident_kb", "libraries"}, medians over several new processes: the processor
/// time and the time from the start of the process to its first reply, and what the process has in memory then.
nlohmann::json measureStarts(const Case& measured);

/// Runs in a process that measureStarts() has started: connects, calls once, and writes its figures into a file.
/// `arguments` are the four after the option: folder, size, time of the start, path of the file. Returns the
/// exit status.
int runStartedProcess(char** arguments);

constexpr char kStartedProcessOption[] = "--started-process";

}  // namespace dovrel::benchmarks
