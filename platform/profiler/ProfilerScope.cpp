#include "platform/profiler/ProfilerScope.h"

#include "platform/profiler/Profiler.h"

namespace dovrel {

ProfilerScope::ProfilerScope(const char* methodName, bool printOnExit)
    : methodName_(methodName), printOnExit_(printOnExit) {
    if (Profiler* const profiler = installedProfiler()) profiler->enter(methodName_);
}

ProfilerScope::~ProfilerScope() {
    Profiler* const profiler = installedProfiler();
    if (profiler == nullptr) return;
    try {
        profiler->leaveAndDump(printOnExit_);
    } catch (...) {
        // Out of memory: the recorded calls are kept. The instrumented method must not fail because of this.
    }
}

}  // namespace dovrel
