// Converts the unwind table of a 32-bit image, __eh_frame. It has the DWARF format, but the numbers of two
// registers are exchanged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace dovrel::macho {

/// Converts the section's content in place to the register numbers of other systems. In macOS the frame
/// pointer is 4 and the stack pointer is 5; other systems exchange the two. Returns the position of each
/// function's description. Throws FormatError if the content is invalid.
std::vector<size_t> convertFrameSection(uint8_t* bytes, size_t size);

}  // namespace dovrel::macho
