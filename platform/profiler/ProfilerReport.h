// Prints the profiler's report about a tree of calls. Every number is printed as a signed 32-bit integer. The
// stream's format flags, width, fill and locale are neither used nor changed.
#pragma once

#include <iosfwd>

#include "platform/profiler/ProfilerNode.h"

namespace dovrel {

/// Prints one line for each call below the root, a caller before the calls that it made: one blank per level,
/// then name, total time and self time.
void printCallTree(const ProfilerNode& root, std::ostream& stream);

/// Prints the call tree, then the methods sorted by self time with their percentage of the whole time, then
/// the methods sorted by total time. A recursive method is counted at every level.
void printProfilerReport(const ProfilerNode& root, std::ostream& stream);

}  // namespace dovrel
