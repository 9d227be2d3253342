// ProfilerScope: times the enclosing block as one call of the installed profiler.
//
//     void Trader::exchange() {
//         ProfilerScope scope("Trader::exchange", false);
//
// Without an installed profiler it does nothing, so the instrumentation may stay in the code.
#pragma once

namespace dovrel {

class ProfilerScope {
  public:
    /// `methodName` is not copied. With `printOnExit`, the recorded calls are deleted at the end of this
    /// scope, unless there is not enough memory to render them.
    ProfilerScope(const char* methodName, bool printOnExit);
    ~ProfilerScope();
    ProfilerScope(const ProfilerScope&) = delete;
    ProfilerScope& operator=(const ProfilerScope&) = delete;

  private:
    const char* const methodName_;
    const bool printOnExit_;
};

}  // namespace dovrel
