// A compact encoding of a function's frame (x86_64), as the instructions that say the same in DWARF.
#pragma once

#include <cstdint>
#include <vector>

namespace dovrel::macho {

/// Modes of an encoding.
constexpr uint32_t kFrameOfBasePointer = 0x01000000;
constexpr uint32_t kFrameOfKnownSize = 0x02000000;
constexpr uint32_t kFrameOfSizeInCode = 0x03000000;
constexpr uint32_t kFrameInDwarf = 0x04000000;

/// Call frame instructions for a function whose encoding has one of the first three modes. `code` are its
/// bytes: the third mode has the size of its frame in an instruction there. Throws FormatError for encodings
/// that do not exist.
std::vector<uint8_t> callFrameInstructions(uint32_t encoding, const std::vector<uint8_t>& code);

}  // namespace dovrel::macho
