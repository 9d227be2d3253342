#include "macho/format/CompactFrame.h"

#include <array>

#include "macho/format/ByteReader.h"
#include "macho/format/CompactUnwindTable.h"
#include "macho/format/DwarfBytes.h"
#include "macho/format/DwarfInstructions.h"

namespace dovrel::macho {

namespace {

constexpr uint32_t kWord = 8;

// The registers with their DWARF numbers.
enum DwarfRegister : uint8_t {
    kRbx = 3,
    kRbp = 6,
    kRsp = 7,
    kR12 = 12,
    kR13 = 13,
    kR14 = 14,
    kR15 = 15,
    kReturnAddress = 16
};

// The registers that a function can save, indexed by their numbers in the compact encoding. 0 means none.
constexpr std::array<uint8_t, 7> kSaved = {0, kRbx, kR12, kR13, kR14, kR15, kRbp};

class FrameInstructions {
  public:
    // Defines the frame's address (the caller's stack pointer) as the register plus `offset` bytes.
    void defineFrame(uint8_t dwarfRegister, uint64_t offset) {
        bytes_.put<uint8_t>(kDefineFrame);
        bytes_.putUnsignedLeb(dwarfRegister);
        bytes_.putUnsignedLeb(offset);
        saved(kReturnAddress, 1);
    }

    // Records that the register was saved `words` words below the frame's address.
    void saved(uint8_t dwarfRegister, uint64_t words) {
        bytes_.put<uint8_t>(static_cast<uint8_t>(kOffset | dwarfRegister));
        bytes_.putUnsignedLeb(words);
    }

    void savedByCompactNumber(uint32_t number, uint64_t words) {
        if (number == 0 || number >= kSaved.size()) throw FormatError("an unwind encoding names no register");
        saved(kSaved[number], words);
    }

    std::vector<uint8_t> take() { return bytes_.take(); }

  private:
    DwarfBytes bytes_;
};

std::vector<uint8_t> basePointerFrame(uint32_t encoding) {
    constexpr int kRegisters = 5;
    constexpr unsigned kBitsPerRegister = 3;
    FrameInstructions frame;
    frame.defineFrame(kRbp, 2 * kWord);
    frame.saved(kRbp, 2);
    const uint32_t firstOffset = encoding >> 16 & 0xFF;  // in words, below the base pointer
    for (unsigned i = 0; i < kRegisters; ++i) {
        const uint32_t number = encoding >> (kBitsPerRegister * i) & 7;
        if (number == 0) continue;
        if (i > firstOffset) throw FormatError("an unwind encoding has a register outside its frame");
        frame.savedByCompactNumber(number, 2 + firstOffset - i);
    }
    return frame.take();
}

uint64_t sizeInCode(uint32_t encoding, const std::vector<uint8_t>& code) {
    const uint32_t place = encoding >> 16 & 0xFF;
    const uint32_t pushed = encoding >> 13 & 7;
    return uint64_t{ByteReader(code.data(), code.size()).at<uint32_t>(place)} + pushed * kWord;
}

// Decodes which registers are saved. The encoding is one number: the index of their permutation among all
// permutations of `count` out of six registers.
std::vector<uint32_t> savedInOrder(uint32_t count, uint32_t permutation) {
    constexpr uint32_t kRegisters = 6;
    std::vector<uint32_t> weights(count, 1);
    // Each position has one choice fewer than the position before it. The last of six positions has only one.
    for (uint32_t place = count; place-- > 1;)
        weights[place - 1] = weights[place] * (kRegisters - place);
    std::vector<uint32_t> free = {1, 2, 3, 4, 5, 6};
    std::vector<uint32_t> order;
    for (const uint32_t weight : weights) {
        const uint32_t choice = permutation / weight;
        permutation %= weight;
        if (choice >= free.size()) throw FormatError("an unwind encoding has an impossible order");
        order.push_back(free[choice]);
        free.erase(free.begin() + choice);
    }
    return order;
}

std::vector<uint8_t> framelessFrame(uint32_t encoding, uint64_t size) {
    const uint32_t count = encoding >> 10 & 7;
    if (count > kSaved.size() - 1) throw FormatError("an unwind encoding saves too many registers");
    FrameInstructions frame;
    frame.defineFrame(kRsp, size);
    uint32_t words = 1 + count;
    for (const uint32_t number : savedInOrder(count, encoding & 0x3FF))
        frame.savedByCompactNumber(number, words--);
    return frame.take();
}

}  // namespace

std::vector<uint8_t> callFrameInstructions(uint32_t encoding, const std::vector<uint8_t>& code) {
    switch (encoding & kUnwindModeMask) {
        case kFrameOfBasePointer:
            return basePointerFrame(encoding);
        case kFrameOfKnownSize:
            return framelessFrame(encoding, uint64_t{encoding >> 16 & 0xFF} * kWord);
        case kFrameOfSizeInCode:
            return framelessFrame(encoding, sizeInCode(encoding, code));
        default:
            throw FormatError("an unwind encoding is of an unknown mode");
    }
}

}  // namespace dovrel::macho
