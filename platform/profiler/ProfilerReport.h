// What the profiler prints about a tree of calls. Every number is printed as a signed 32-bit integer. The
// format flags, width, fill and locale of the stream are neither used nor changed.
#pragma once

#include <iosfwd>

#include "platform/profiler/ProfilerNode.h"

namespace dovrel {

/// One line for each call below the root, callers before what they call: a blank for each level, name, total,
/// self.
void printCallTree(const ProfilerNode& root, std::ostream& stream);

/// The call tree, then the methods by their own time with its share of all the time, then the methods by
/// total time. A method that calls itself is counted at every level.
void printProfilerReport(const ProfilerNode& root, std::ostream& stream);

}  // namespace dovrel
