#include "platform/ProfilerScope.h"

#include "platform/Profiler.h"

namespace dovrel {

ProfilerScope::ProfilerScope(const char* methodName, bool printOnExit)
    : methodName_(methodName), printOnExit_(printOnExit) {
    if (Profiler* const profiler = installedProfiler()) profiler->enter(methodName_);
}

ProfilerScope::~ProfilerScope() {
    if (Profiler* const profiler = installedProfiler()) profiler->leaveAndDump(printOnExit_);
}

}  // namespace dovrel
