// The compact unwind table of a loaded image, written anew in the format that unwinders of other systems
// read.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "macho/format/DwarfBytes.h"

namespace dovrel::macho {

/// A function with its places in memory.
struct UnwindFunction {
    uint64_t begin = 0;
    uint64_t size = 0;
    uint64_t personality = 0;  ///< 0: none
    uint64_t handlers = 0;     ///< 0: none
    /// As callFrameInstructions answers them.
    std::vector<uint8_t> instructions;
};

class UnwindFrames {
  public:
    /// Adds the description of a function, and one of what it has in common with others where there is none
    /// yet.
    void add(const UnwindFunction& function);

    /// All descriptions, ended by a zero word. The other functions no longer answer anything.
    std::vector<uint8_t> take();

    /// Where in the bytes each function's description begins.
    const std::vector<size_t>& positions() const { return positions_; }

  private:
    size_t commonFor(uint64_t personality);
    void end(size_t begin);

    DwarfBytes bytes_;
    std::map<uint64_t, size_t> commons_;
    std::vector<size_t> positions_;
};

}  // namespace dovrel::macho
