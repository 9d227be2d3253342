// The user's home. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// The home folder: HOME if it is set to an absolute path and the program runs with its user's own rights,
/// else what the system has for the user; empty when there is none. Any thread.
std::string homeFolder();

}  // namespace portability
