// DWARF's call frame instructions, which describe where a function has saved its caller's registers.
#pragma once

#include <cstdint>

namespace dovrel::macho {

// The operand of a short instruction is in its lower bits.
constexpr uint8_t kShortInstructionMask = 0xC0;
enum ShortFrameInstruction : uint8_t { kAdvance = 0x40, kOffset = 0x80, kRestore = 0xC0 };

enum FrameInstruction : uint8_t {
    kNothing = 0x00,
    kSetLocation = 0x01,
    kAdvance1 = 0x02,
    kAdvance2 = 0x03,
    kAdvance4 = 0x04,
    kOffsetExtended = 0x05,
    kRestoreExtended = 0x06,
    kUndefined = 0x07,
    kSameValue = 0x08,
    kRegister = 0x09,
    kRememberState = 0x0A,
    kRestoreState = 0x0B,
    kDefineFrame = 0x0C,
    kDefineFrameRegister = 0x0D,
    kDefineFrameOffset = 0x0E,
    kArgumentsSize = 0x2E
};

}  // namespace dovrel::macho
