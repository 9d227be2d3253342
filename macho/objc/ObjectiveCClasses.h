// The classes that a macOS image defines itself.
#pragma once

#include <cstdint>
#include <map>

#include "macho/format/MachOFile.h"
#include "macho/image/MappedImage.h"

struct objc_class;

namespace dovrel::macho {

/// For each description of a class in the image, by its address, the class of this system's runtime.
using ClassMap = std::map<uintptr_t, objc_class*>;

/// Registers all classes of the linked image. Throws FormatError where the runtime has a class of that name.
ClassMap registerClasses(const MachOFile& file, MappedImage& image);

}  // namespace dovrel::macho
