// Makes the Objective-C part of a macOS image known to this system's runtime.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Registers the selectors and classes of the linked image, and converts its constant strings to objects of
/// this system. Throws FormatError if the runtime rejects a part.
void prepareObjectiveC(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
