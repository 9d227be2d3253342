// Converts the compact encoding of a function's stack frame (x86_64) to DWARF instructions.
#pragma once

#include <cstdint>
#include <vector>

namespace dovrel::macho {

/// Modes of an encoding.
constexpr uint32_t kFrameOfBasePointer = 0x01000000;
constexpr uint32_t kFrameOfKnownSize = 0x02000000;
constexpr uint32_t kFrameOfSizeInCode = 0x03000000;
constexpr uint32_t kFrameInDwarf = 0x04000000;
/// In the mode kFrameInDwarf, these bits contain the position of the description in the section __eh_frame.
constexpr uint32_t kDwarfPositionMask = 0x00FFFFFF;

/// Returns the call frame instructions for a function whose encoding has one of the first three modes. `code`
/// contains the function's bytes: in the third mode, an instruction there contains the size of the frame.
/// Throws FormatError for invalid encodings.
std::vector<uint8_t> callFrameInstructions(uint32_t encoding, const std::vector<uint8_t>& code);

}  // namespace dovrel::macho
