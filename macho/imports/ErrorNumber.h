// Converts errno to the numbers of macOS.
#pragma once

namespace dovrel::macho {

/// Returns the address of the calling thread's errno for code of an image. (On macOS the macro errno calls
/// this function.)
int* errorNumber();

/// Returns the macOS number for an error of this system. Returns the same number if both systems agree or
/// macOS has no such error.
int platformErrorNumber(int systemNumber);

}  // namespace dovrel::macho
