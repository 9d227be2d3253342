#include "macho/format/FrameSection.h"

#include "macho/format/ByteReader.h"
#include "macho/format/DwarfInstructions.h"

namespace dovrel::macho {

namespace {

constexpr uint8_t kLower = 4;
constexpr uint8_t kUpper = 5;
constexpr uint8_t kRegisterMask = 0x3F;

class Converter {
  public:
    Converter(uint8_t* bytes, size_t size) : bytes_(bytes), reader_(bytes, size) {}

    std::vector<size_t> convert() {
        std::vector<size_t> functions;
        while (!reader_.isAtEnd()) {
            const size_t begin = reader_.position();
            const uint32_t size = reader_.next<uint32_t>();
            if (size == 0) break;
            end_ = reader_.position() + size;
            reader_.part(reader_.position(), size);
            const bool isCommon = reader_.next<uint32_t>() == 0;
            if (isCommon) {
                skipCommon();
            } else {
                functions.push_back(begin);
                skipFunction();
            }
            while (reader_.position() < end_)
                convertInstruction();
            if (reader_.position() != end_) throw FormatError("an unwind instruction is cut off");
        }
        return functions;
    }

  private:
    void skip(uint64_t count) { reader_.moveTo(reader_.position() + static_cast<size_t>(count)); }

    void skipCommon() {
        reader_.next<uint8_t>();  // version
        if (reader_.nextString().substr(0, 1) != "z")
            throw FormatError("an unwind description is of an unknown kind");
        reader_.nextUnsignedLeb();
        reader_.nextSignedLeb();
        reader_.next<uint8_t>();  // register of the return address
        skip(reader_.nextUnsignedLeb());
    }

    void skipFunction() {
        skip(2 * sizeof(uint32_t));
        skip(reader_.nextUnsignedLeb());
    }

    // Exchanges the register number at the position. Other bits of that byte may have other meanings.
    void exchangeAt(size_t position) {
        const uint8_t number = bytes_[position] & kRegisterMask;
        if (number == kLower || number == kUpper) bytes_[position] ^= kLower ^ kUpper;
    }

    void exchangeNext() {
        exchangeAt(reader_.position());
        reader_.next<uint8_t>();
    }

    void convertInstruction() {
        const uint8_t byte = reader_.next<uint8_t>();
        switch (byte & kShortInstructionMask) {
            case kAdvance:
                return;
            case kOffset:
                exchangeAt(reader_.position() - 1);
                reader_.nextUnsignedLeb();
                return;
            case kRestore:
                exchangeAt(reader_.position() - 1);
                return;
            default:
                convertLong(byte);
        }
    }

    void convertLong(uint8_t instruction) {
        switch (instruction) {
            case kNothing:
            case kRememberState:
            case kRestoreState:
                return;
            case kSetLocation:
            case kAdvance4:
                return skip(4);
            case kAdvance1:
                return skip(1);
            case kAdvance2:
                return skip(2);
            case kOffsetExtended:
            case kDefineFrame:
                exchangeNext();
                reader_.nextUnsignedLeb();
                return;
            case kRestoreExtended:
            case kUndefined:
            case kSameValue:
            case kDefineFrameRegister:
                return exchangeNext();
            case kRegister:
                exchangeNext();
                return exchangeNext();
            case kDefineFrameOffset:
            case kArgumentsSize:
                reader_.nextUnsignedLeb();
                return;
            default:
                throw FormatError("an unwind instruction is unknown");
        }
    }

    uint8_t* const bytes_;
    ByteReader reader_;
    size_t end_ = 0;
};

}  // namespace

std::vector<size_t> convertFrameSection(uint8_t* bytes, size_t size) {
    return Converter(bytes, size).convert();
}

}  // namespace dovrel::macho
