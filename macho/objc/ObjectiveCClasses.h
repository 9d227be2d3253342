// Registers the classes that a macOS image defines.
#pragma once

#include <cstdint>
#include <map>

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

struct objc_class;

namespace dovrel::macho {

/// Maps the address of each class description in the image to the class of this system's runtime.
using ClassMap = std::map<uintptr_t, objc_class*>;

/// Registers all classes of the linked image. Throws FormatError if the runtime already has a class with
/// the name.
ClassMap registerClasses(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
