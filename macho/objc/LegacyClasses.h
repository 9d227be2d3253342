// The classes that a 32-bit macOS image defines itself; such images have an older layout for them.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Registers all classes of the linked 32-bit image. Throws FormatError where the runtime has a class of that
/// name already or none of the superclass's, and where it puts an instance variable elsewhere than the
/// compiler.
void registerLegacyClasses(const MachOFile& file, const MappedImage& image);

/// Makes the names of classes that code of the image looks up the classes themselves.
void referToLegacyClasses(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
