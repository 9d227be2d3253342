// Converts the compact unwind table of a loaded image to the format that other systems' unwinders read.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "macho/format/DwarfBytes.h"

namespace dovrel::macho {

/// A function with its addresses in memory.
struct UnwindFunction {
    uint64_t begin = 0;
    uint64_t size = 0;
    uint64_t personality = 0;  ///< 0 if it has none
    uint64_t handlers = 0;     ///< 0 if it has none
    /// The result of callFrameInstructions().
    std::vector<uint8_t> instructions;
};

class UnwindFrames {
  public:
    /// Adds the description of a function. Before that, it adds the description of the properties that the
    /// function shares with others, if it is not present yet.
    void add(const UnwindFunction& function);

    /// Returns all descriptions, which end with a zero word. After this call only positions() may be called.
    std::vector<uint8_t> take();

    /// Returns the position of each function's description in the bytes.
    const std::vector<size_t>& positions() const { return positions_; }

  private:
    size_t commonFor(uint64_t personality);
    void end(size_t begin);

    DwarfBytes bytes_;
    std::map<uint64_t, size_t> commons_;
    std::vector<size_t> positions_;
};

}  // namespace dovrel::macho
