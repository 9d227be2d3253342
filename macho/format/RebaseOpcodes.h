// Reads the rebase information of an image: the places that contain its own addresses.
#pragma once

#include <cstdint>
#include <vector>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

/// Returns the address of every word to which the image's base must be added. Throws FormatError if an
/// instruction is unknown or refers to an address outside its segment.
std::vector<uint64_t> rebasedWords(const MachOFile& file);

}  // namespace dovrel::macho
