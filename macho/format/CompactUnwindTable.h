// How each function of an image is left while an exception is on its way: the table that the system consults
// first. The other one, in the DWARF format, is incomplete on purpose and not relocated by every linker.
#pragma once

#include <cstdint>
#include <vector>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {

/// One function. All positions count from the image's beginning.
struct CompactUnwindEntry {
    uint32_t begin = 0;
    uint32_t end = 0;
    /// What the processor's encoding says about its frame; 0 where nothing is known.
    uint32_t encoding = 0;
    /// Where the address of its personality function is; 0 where it has none.
    uint32_t personality = 0;
    /// Its table of handlers; 0 where it has none.
    uint32_t handlers = 0;
};

/// The parts of an encoding that all processors share.
constexpr uint32_t kUnwindHasHandlers = 0x40000000;
constexpr uint32_t kUnwindModeMask = 0x0F000000;

/// The content of __unwind_info, in the order of addresses. Throws FormatError where it leaves its section.
std::vector<CompactUnwindEntry> compactUnwindEntries(const ByteReader& section);

}  // namespace dovrel::macho
