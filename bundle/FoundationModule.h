// Loads the bundle's second module. Private to this folder.
#pragma once

#include <string>

#include "bundle/FoundationEntries.h"

namespace portability {

/// Returns the functions of the second module, which is the file "DovrelFoundation" in the folder of the
/// executable or library that contains this code. The first call loads it; from then on it stays in the process.
///
/// Returns null if the module cannot be loaded: it is missing, damaged or of another version, a library that it
/// needs is missing, or memory runs out. Then it writes a line with the reason to the system log, and the next
/// call tries again.
///
/// Any thread, several at the same time. Holds no lock while it loads, because another thread may call this
/// function while it loads a library itself.
const FoundationEntries* foundationEntries() noexcept;

/// Loads the module at `path`, and returns its functions. Returns null and sets `failure` if it cannot be
/// used, for the reasons above. Does not call useFoundation(). For programs outside a bundle. Any thread.
const FoundationEntries* loadFoundationModule(const std::string& path, std::string& failure);

}  // namespace portability
