// Where an image holds addresses of its own, which move with it.
#pragma once

#include <cstdint>
#include <vector>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

/// The address of every word that has to be increased by the image's base. Throws FormatError where the
/// instructions are not known or point outside their segment.
std::vector<uint64_t> rebasedWords(const MachOFile& file);

}  // namespace dovrel::macho
