// errno as macOS numbers it.
#pragma once

namespace dovrel::macho {

/// Where code of an image finds the calling thread's errno (what the macro calls there).
int* errorNumber();

/// The macOS number of an error of this system; the same number where both agree or macOS has none.
int platformErrorNumber(int systemNumber);

}  // namespace dovrel::macho
