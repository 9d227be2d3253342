// Converts the string objects that an image contains.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Converts each constant string of the linked image to this system's class. The object keeps its address,
/// because code refers to it.
void convertConstantStrings(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
