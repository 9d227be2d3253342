#include "macho/format/BindOpcodes.h"

#include "macho/format/SegmentCursor.h"

namespace dovrel::macho {

namespace {

constexpr uint8_t kOptionalFlag = 1;

class Interpreter {
  public:
    explicit Interpreter(const MachOFile& file) : wordSize_(file.wordSize()), cursor_(file) {}

    // Executes one instruction. Returns false at the end of an entry; in the list of lazy bindings more
    // entries follow.
    bool step(ByteReader& code) {
        const uint8_t byte = code.next<uint8_t>();
        const uint8_t immediate = byte & kImmediateMask;
        const auto opcode = static_cast<BindOpcode>(byte & ~kImmediateMask);
        switch (opcode) {
            case BindOpcode::kDone:
                return false;
            case BindOpcode::kSetPlace:
                cursor_.moveTo(immediate, code.nextUnsignedLeb());
                break;
            case BindOpcode::kSkip:
                cursor_.skip(code.nextUnsignedLeb());
                break;
            case BindOpcode::kBind:
                bind(1, 0);
                break;
            case BindOpcode::kBindAndSkip:
                bind(1, code.nextUnsignedLeb());
                break;
            case BindOpcode::kBindAndSkipWords:
                bind(1, immediate * wordSize_);
                break;
            case BindOpcode::kBindManyWithGaps: {
                const uint64_t count = code.nextUnsignedLeb();
                bind(count, code.nextUnsignedLeb());
                break;
            }
            default:
                describe(opcode, immediate, code);
        }
        return true;
    }

    std::vector<Binding> take() { return std::move(bindings_); }

  private:
    // Executes an instruction that sets a property of the next binding.
    void describe(BindOpcode opcode, uint8_t immediate, ByteReader& code) {
        switch (opcode) {
            case BindOpcode::kSetLibrary:
                next_.library = immediate;
                break;
            case BindOpcode::kSetLibraryLong:
                next_.library = static_cast<int64_t>(code.nextUnsignedLeb());
                break;
            case BindOpcode::kSetSpecialLibrary:
                // A negative number whose upper bits are omitted.
                next_.library = immediate == 0 ? 0 : immediate - (kImmediateMask + 1);
                break;
            case BindOpcode::kSetSymbol:
                next_.symbol = code.nextString();
                next_.isOptional = (immediate & kOptionalFlag) != 0;
                break;
            case BindOpcode::kSetType:
                if (immediate < 1 || immediate > 3) throw FormatError("a binding is of an unknown type");
                next_.type = static_cast<BindingType>(immediate);
                break;
            case BindOpcode::kSetAddend:
                next_.addend = code.nextSignedLeb();
                break;
            default:
                throw FormatError("a binding instruction is unknown");
        }
    }

    void bind(uint64_t count, uint64_t gap) {
        for (; count > 0; --count) {
            next_.address = cursor_.takeWord();
            bindings_.push_back(next_);
            cursor_.skip(gap);
        }
    }

    const size_t wordSize_;
    SegmentCursor cursor_;
    Binding next_;
    std::vector<Binding> bindings_;
};

std::vector<Binding> oneEntry(const MachOFile& file, ByteReader code) {
    Interpreter interpreter(file);
    while (!code.isAtEnd() && interpreter.step(code)) {
    }
    return interpreter.take();
}

}  // namespace

std::vector<Binding> ordinaryBindings(const MachOFile& file) {
    return oneEntry(file, file.bindings());
}

std::vector<Binding> weakBindings(const MachOFile& file) {
    return oneEntry(file, file.weakBindings());
}

std::vector<Binding> lazyBindings(const MachOFile& file) {
    Interpreter interpreter(file);
    ByteReader code = file.lazyBindings();
    while (!code.isAtEnd())
        interpreter.step(code);
    return interpreter.take();
}

}  // namespace dovrel::macho
