// Tells this process's unwinder how the functions of an image are left.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Registers all functions of the image, which has to be linked, for as long as the process lives. Throws
/// FormatError where a function's description cannot be had or is not right.
void registerForUnwinding(const MachOFile& file, const MappedImage& image);

}  // namespace dovrel::macho
