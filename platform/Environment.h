// The environment variables of the process. Tests can replace them.
#pragma once

#include <string>

namespace dovrel {

/// Returns the value of a variable, or null if it is not set.
using EnvironmentSource = const char* (*)(const char* name);

/// Returns the value of the variable, or "" if it is not set. In a program that runs with another user's
/// rights (set-user-ID or set-group-ID), it always returns "", because the user who started it controls the
/// environment. May be called from any thread as long as no thread changes the environment.
std::string environmentVariable(const char* name);

/// For tests: environmentVariable() reads from `source` from now on. Null restores the system's environment.
void setEnvironmentSource(EnvironmentSource source);

}  // namespace dovrel
