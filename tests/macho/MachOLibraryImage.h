// What LibraryImage has loaded.
#pragma once

#include <string>

#include "macho/image/LoadedBundle.h"

namespace dovrel::test {

/// The executable, loaded at the first call and once for all paths of the file. Throws std::runtime_error,
/// which says why, where that is not possible.
macho::LoadedBundle& loadedExecutable(const std::string& executable);

}  // namespace dovrel::test
