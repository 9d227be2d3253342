// The Objective-C part of a macOS image, made known to this system's runtime.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Registers selectors and classes of the linked image and makes its constant strings objects of this system.
/// Throws FormatError for what the runtime does not take.
void prepareObjectiveC(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
