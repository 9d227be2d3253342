// Fuzz target for the reader that keeps its own copy. It reads two blocks one after the other; the first byte
// of the input says where the first block ends. Tags of the first block keep their offsets, which may be
// beyond the end of the second block. No read of a tag may leave the copy.

#include <memory>

#include "FuzzTarget.h"
#include "client/exceptions/CPPException.h"
#include "serialization/StructuredCharArrayReader.h"

namespace {

using namespace dovrel;

void setBuffer(StructuredCharArrayReader& reader, const uint8_t* data, size_t size) {
    try {
        reader.setBuffer(data, static_cast<uint32_t>(size));
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        FUZZ_CHECK(failure->getTypeCode() == 2);
    }
}

void askFor(const StructuredCharArrayReader& reader, uint32_t tag) {
    if (!reader.hasPart(tag)) return;
    const uint32_t length = reader.getPartLength(tag);
    const std::unique_ptr<CPPByteArray> part(reader.getPart(tag));
    FUZZ_CHECK(part->getSize() == length);
    FUZZ_CHECK(reader.readStringPart(tag).size() == length);
    reader.readUInt32Part(tag);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const size_t rest = size - 1;
    const size_t first = data[0] < rest ? data[0] : rest;
    StructuredCharArrayReader reader;
    setBuffer(reader, data + 1, first);
    setBuffer(reader, data + 1 + first, rest - first);
    reader.getTypeNumber();
    for (uint32_t tag = 0; tag < 256; ++tag)
        askFor(reader, tag);
    return 0;
}
