// Finds symbols of this system's libc++, which replaces that of macOS.
#pragma once

#include <string>

namespace dovrel::macho {

/// Returns the address of a symbol of libc++ or of its runtime, by its name on this system. The library is
/// loaded separately from the C++ library of this program. Throws FormatError if there is no such symbol.
void* standardLibrarySymbol(const std::string& name);

}  // namespace dovrel::macho
