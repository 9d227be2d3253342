// The numbers of the file format. cmake/macos/constants.py reads the enumerations of this header, so that the
// scripts there use the same numbers.
#pragma once

#include <cstdint>

namespace dovrel::macho {

constexpr uint32_t kUniversalMagic = 0xCAFEBABE;  // big-endian, like the whole universal header
constexpr uint32_t kMagic32 = 0xFEEDFACE;
constexpr uint32_t kMagic64 = 0xFEEDFACF;

enum class Processor : uint32_t { kI386 = 7, kX86_64 = 0x01000007 };

constexpr uint32_t kBundleType = 8;

enum Command : uint32_t {
    kSegment32 = 0x1,
    kLoadLibrary = 0xC,
    kSegment64 = 0x19,
    kFixups = 0x22,
    kLoadWeakLibrary = 0x80000018,
    kReexportLibrary = 0x8000001F,
    kFixupsOnly = 0x80000022,
    kChainedFixups = 0x80000034
};

constexpr uint32_t kSectionTypeMask = 0xFF;
enum SectionType : uint32_t {
    kInitialiserPointers = 0x9,
    kTerminatorPointers = 0xA,
    kThreadVariables = 0x13
};

enum Protection : uint32_t { kReadable = 1, kWritable = 2, kExecutable = 4 };

// The instructions that list the pointers to rebase or to bind. The lower bits are the first operand.
constexpr uint8_t kImmediateMask = 0x0F;

enum class RebaseOpcode : uint8_t {
    kDone = 0x00,
    kSetType = 0x10,
    kSetPlace = 0x20,
    kSkip = 0x30,
    kSkipWords = 0x40,
    kRebase = 0x50,
    kRebaseMany = 0x60,
    kRebaseAndSkip = 0x70,
    kRebaseManyWithGaps = 0x80
};

enum class BindOpcode : uint8_t {
    kDone = 0x00,
    kSetLibrary = 0x10,
    kSetLibraryLong = 0x20,
    kSetSpecialLibrary = 0x30,
    kSetSymbol = 0x40,
    kSetType = 0x50,
    kSetAddend = 0x60,
    kSetPlace = 0x70,
    kSkip = 0x80,
    kBind = 0x90,
    kBindAndSkip = 0xA0,
    kBindAndSkipWords = 0xB0,
    kBindManyWithGaps = 0xC0
};

}  // namespace dovrel::macho
