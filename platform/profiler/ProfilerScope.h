// ProfilerScope: times the block it stands in as one call of the installed profiler.
//
//     void Trader::exchange() {
//         ProfilerScope scope("Trader::exchange", false);
//
// Without an installed profiler it does nothing, so instrumented code may stay instrumented.
#pragma once

namespace dovrel {

class ProfilerScope {
  public:
    /// `methodName` is not copied. `printOnExit` ends the profile with this scope; where memory is short it
    /// stays.
    ProfilerScope(const char* methodName, bool printOnExit);
    ~ProfilerScope();
    ProfilerScope(const ProfilerScope&) = delete;
    ProfilerScope& operator=(const ProfilerScope&) = delete;

  private:
    const char* const methodName_;
    const bool printOnExit_;
};

}  // namespace dovrel
