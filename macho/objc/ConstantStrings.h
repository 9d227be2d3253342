// Strings that stand in an image as objects.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Makes each constant string of the linked image one of this system's, in its place: code has its address.
void convertConstantStrings(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
