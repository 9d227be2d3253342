// libc++ of this system, which stands for that of macOS.
#pragma once

#include <string>

namespace dovrel::macho {

/// The address of a symbol of libc++ or of its runtime, by its name on this system. The library is kept apart
/// from the C++ library that this program uses. Throws FormatError where there is none.
void* standardLibrarySymbol(const std::string& name);

}  // namespace dovrel::macho
