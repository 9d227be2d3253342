// The functions that an image gives to others.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {

/// Every exported symbol, as it stands in the image (a C function begins with "_"), and its address. Throws
/// FormatError where the tree has loops, leaves its bytes, or hands on a symbol of another library.
std::map<std::string, uint64_t> exportedSymbols(const ByteReader& trie);

}  // namespace dovrel::macho
