// Registers an image's unwind information with this process's unwinder.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Registers all functions of the image, which must be linked, until the process exits. Throws FormatError if
/// the description of a function is missing or wrong.
void registerForUnwinding(const MachOFile& file, const MappedImage& image);

}  // namespace dovrel::macho
