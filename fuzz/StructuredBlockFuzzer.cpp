// Fuzz target for the reader of structured blocks. A second, much simpler parser must accept the same inputs
// and find the same parts in them.

#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "FuzzTarget.h"
#include "client/exceptions/CPPException.h"
#include "serialization/StructuredByteArrayReader.h"

namespace {

using namespace dovrel;

struct Block {
    uint32_t typeNumber = 0xFFFFFFFF;
    std::map<uint32_t, std::string> parts;
    bool whole = false;  // false: the input ended or was wrong after the last of the parts
};

// Consumes bytes from the beginning of an input.
class Cursor {
  public:
    Cursor(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool atEnd() const { return rest_.empty(); }

    std::optional<std::string> take(uint64_t count) {
        if (count > rest_.size()) return std::nullopt;
        std::string taken = rest_.substr(0, static_cast<size_t>(count));
        rest_.erase(0, static_cast<size_t>(count));
        return taken;
    }

    std::optional<uint32_t> takeBigEndian() {
        const std::optional<std::string> bytes = take(4);
        if (!bytes) return std::nullopt;
        uint32_t value = 0;
        for (const char byte : *bytes)
            value = value << 8 | static_cast<uint8_t>(byte);
        return value;
    }

  private:
    std::string rest_;
};

Block parse(Cursor input) {
    Block block;
    if (input.take(4) != "AsAk") return block;
    const std::optional<std::string> format = input.take(2);
    if (format == std::string("\0\1", 2)) {
        const std::optional<uint32_t> type = input.takeBigEndian();
        if (!type) return block;
        block.typeNumber = *type;
    } else if (format != std::string("\0\0", 2)) {
        return block;
    }
    while (!input.atEnd()) {
        const std::optional<uint32_t> tag = input.takeBigEndian();
        const std::optional<uint32_t> length = input.takeBigEndian();
        if (!tag || !length) return block;
        std::optional<std::string> data = input.take(*length);
        if (!data) return block;
        block.parts.emplace(*tag, *data);
    }
    block.whole = true;
    return block;
}

bool initialize(StructuredByteArrayReader& reader, const CPPByteArray& bytes) {
    try {
        reader.initialize(&bytes);
        return true;
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        FUZZ_CHECK(failure->getTypeCode() == 2);
        FUZZ_CHECK(std::strlen(failure->getDetail()) == 14);
        return false;
    }
}

void checkPart(const StructuredByteArrayReader& reader, uint32_t tag, const std::string& data) {
    FUZZ_CHECK(reader.hasPart(tag));
    FUZZ_CHECK(reader.getPartLength(tag) == data.size());
    FUZZ_CHECK(reader.readStringPart(tag) == data);
    std::string copy(data.size(), '\0');
    reader.readPart(tag, copy.data());
    FUZZ_CHECK(copy == data);

    uint32_t value = 0;
    for (size_t i = 0; i < 4 && i < data.size(); ++i) {
        value |= static_cast<uint32_t>(static_cast<uint8_t>(data[i])) << (8 * i);
    }
    FUZZ_CHECK(reader.readUInt32Part(tag) == value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CPPByteArray bytes;
    bytes.set(data, static_cast<uint32_t>(size));
    StructuredByteArrayReader reader;
    const bool accepted = initialize(reader, bytes);

    const Block expected = parse(Cursor(data, size));
    FUZZ_CHECK(accepted == expected.whole);
    FUZZ_CHECK(reader.getTypeNumber() == expected.typeNumber);
    for (const auto& [tag, part] : expected.parts) {
        checkPart(reader, tag, part);
        FUZZ_CHECK(reader.hasPart(tag + 1) == (expected.parts.count(tag + 1) == 1));
        FUZZ_CHECK(reader.hasPart(tag - 1) == (expected.parts.count(tag - 1) == 1));
    }
    return 0;
}
