#include "macho/format/RebaseOpcodes.h"

#include "macho/format/SegmentCursor.h"

namespace dovrel::macho {

namespace {

constexpr uint8_t kImmediateMask = 0x0F;
constexpr uint8_t kPointerType = 1;
constexpr uint8_t kTextAddressType = 2;  // i386 code contains addresses

enum Opcode : uint8_t {
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

}  // namespace

std::vector<uint64_t> rebasedWords(const MachOFile& file) {
    std::vector<uint64_t> words;
    SegmentCursor cursor(file);
    const auto rebase = [&](uint64_t count, uint64_t gap) {
        for (; count > 0; --count) {
            words.push_back(cursor.takeWord());
            cursor.skip(gap);
        }
    };

    ByteReader code = file.rebases();
    while (!code.isAtEnd()) {
        const uint8_t byte = code.next<uint8_t>();
        const uint8_t immediate = byte & kImmediateMask;
        switch (byte & ~kImmediateMask) {
            case kDone:
                return words;
            case kSetType:
                if (immediate != kPointerType && immediate != kTextAddressType)
                    throw FormatError("a rebase is of an unknown type");
                break;
            case kSetPlace:
                cursor.moveTo(immediate, code.nextUnsignedLeb());
                break;
            case kSkip:
                cursor.skip(code.nextUnsignedLeb());
                break;
            case kSkipWords:
                cursor.skip(immediate * file.wordSize());
                break;
            case kRebase:
                rebase(immediate, 0);
                break;
            case kRebaseMany:
                rebase(code.nextUnsignedLeb(), 0);
                break;
            case kRebaseAndSkip:
                rebase(1, code.nextUnsignedLeb());
                break;
            case kRebaseManyWithGaps: {
                const uint64_t count = code.nextUnsignedLeb();
                rebase(count, code.nextUnsignedLeb());
                break;
            }
            default:
                throw FormatError("a rebase instruction is unknown");
        }
    }
    return words;
}

}  // namespace dovrel::macho
