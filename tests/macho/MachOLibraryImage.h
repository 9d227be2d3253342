// Returns the executable that LibraryImage has loaded.
#pragma once

#include <string>

#include "macho/LoadedBundle.h"

namespace dovrel::test {

/// Returns the executable. It is loaded at the first call, and only once for all paths of the same file.
/// Throws std::runtime_error with the reason if that fails.
macho::LoadedBundle& loadedExecutable(const std::string& executable);

}  // namespace dovrel::test
