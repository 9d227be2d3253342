// Reads the symbols that an image exports.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {

/// Returns all exported symbols with their addresses. The names are as in the image: the name of a C function
/// begins with "_". Throws FormatError if the trie has loops, refers to bytes outside its range, or
/// re-exports a symbol of another library.
std::map<std::string, uint64_t> exportedSymbols(const ByteReader& trie);

}  // namespace dovrel::macho
