// Reads the compact unwind table of an image, which the system uses first when an exception leaves a
// function. The other table, in the DWARF format, omits functions on purpose, and some linkers do not
// relocate it.
#pragma once

#include <cstdint>
#include <vector>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {

/// One function. All positions are relative to the start of the image.
struct CompactUnwindEntry {
    uint32_t begin = 0;
    uint32_t end = 0;
    /// The processor-specific encoding of its frame; 0 if it is unknown.
    uint32_t encoding = 0;
    /// The position of the address of its personality function; 0 if it has none.
    uint32_t personality = 0;
    /// The position of its table of handlers; 0 if it has none.
    uint32_t handlers = 0;
};

/// The parts of an encoding that are the same for all processors.
constexpr uint32_t kUnwindHasHandlers = 0x40000000;
constexpr uint32_t kUnwindModeMask = 0x0F000000;

/// Returns the entries of the section __unwind_info, ordered by address. Throws FormatError if they refer to
/// bytes outside the section.
std::vector<CompactUnwindEntry> compactUnwindEntries(const ByteReader& section);

}  // namespace dovrel::macho
