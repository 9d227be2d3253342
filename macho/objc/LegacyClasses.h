// Registers the classes that a 32-bit macOS image defines. Their descriptions have an older layout.
#pragma once

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

/// Registers all classes of the linked 32-bit image. Throws FormatError in these cases:
/// - The runtime already has a class with the name.
/// - The runtime does not have the superclass.
/// - An instance variable has another offset than in the compiled code.
void registerLegacyClasses(const MachOFile& file, const MappedImage& image);

/// Replaces each class name that code of the image looks up by a pointer to the class.
void referToLegacyClasses(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
