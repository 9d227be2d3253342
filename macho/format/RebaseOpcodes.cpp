#include "macho/format/RebaseOpcodes.h"

#include "macho/format/SegmentCursor.h"

namespace dovrel::macho {

namespace {

constexpr uint8_t kPointerType = 1;
constexpr uint8_t kTextAddressType = 2;  // i386 code contains addresses

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
        switch (static_cast<RebaseOpcode>(byte & ~kImmediateMask)) {
            case RebaseOpcode::kDone:
                return words;
            case RebaseOpcode::kSetType:
                if (immediate != kPointerType && immediate != kTextAddressType)
                    throw FormatError("a rebase is of an unknown type");
                break;
            case RebaseOpcode::kSetPlace:
                cursor.moveTo(immediate, code.nextUnsignedLeb());
                break;
            case RebaseOpcode::kSkip:
                cursor.skip(code.nextUnsignedLeb());
                break;
            case RebaseOpcode::kSkipWords:
                cursor.skip(immediate * file.wordSize());
                break;
            case RebaseOpcode::kRebase:
                rebase(immediate, 0);
                break;
            case RebaseOpcode::kRebaseMany:
                rebase(code.nextUnsignedLeb(), 0);
                break;
            case RebaseOpcode::kRebaseAndSkip:
                rebase(1, code.nextUnsignedLeb());
                break;
            case RebaseOpcode::kRebaseManyWithGaps: {
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
