// The environment of the process, which tests can replace.
#pragma once

#include <string>

namespace dovrel {

/// Gives the value of a variable, null where it is not set.
using EnvironmentSource = const char* (*)(const char* name);

/// The value of the variable, "" where it is not set; "", too, in a program that runs with another user's
/// rights, because its environment comes from somebody who does not have them. Any thread, as long as none
/// changes the environment.
std::string environmentVariable(const char* name);

/// Takes the values from `source` from now on; null is the system's environment again. For tests.
void setEnvironmentSource(EnvironmentSource source);

}  // namespace dovrel
