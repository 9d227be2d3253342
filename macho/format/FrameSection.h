// The unwind table of a 32-bit image, __eh_frame: in DWARF, but with two registers' numbers exchanged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace dovrel::macho {

/// Rewrites the section's content, in which the frame pointer is 4 and the stack pointer 5, into the numbers
/// of other systems, which have it the other way round. Answers where each function's description begins.
/// Throws FormatError where the content is not as it should be.
std::vector<size_t> convertFrameSection(uint8_t* bytes, size_t size);

}  // namespace dovrel::macho
