// Fuzz target for "dovrel decode". Bytes of every kind can be decoded and written as text and as JSON, and the
// decoder finds damage in exactly the blocks that the reader of the library rejects.
#include <memory>
#include <optional>
#include <string>

#include "FuzzTarget.h"
#include "client/exceptions/CPPException.h"
#include "serialization/StructuredByteArrayReader.h"
#include "tools/decode/BlockParts.h"
#include "tools/decode/DecodedOutput.h"
#include "tools/decode/Decoder.h"
#include "tools/decode/HexText.h"

namespace {

using namespace dovrel;
using namespace dovrel::tools;

bool isAccepted(ByteView bytes, const BlockParts& parts) {
    CPPByteArray array;
    array.set(bytes.data, bytes.length);
    StructuredByteArrayReader reader;
    bool accepted = true;
    try {
        reader.initialize(&array);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        accepted = false;
    }
    for (const BlockPart& part : parts.parts)
        FUZZ_CHECK(reader.hasPart(part.tag));
    return accepted;
}

void checkDecoded(ByteView bytes, std::optional<InputKind> kind) {
    const Decoded decoded = decode(bytes, kind, 64);
    FUZZ_CHECK(!toOutputText(decoded).empty());
    FUZZ_CHECK(!toJson(decoded).dump().empty());
    for (const Finding& finding : decoded.findings)
        FUZZ_CHECK(finding.offset <= bytes.length);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const ByteView bytes{data, static_cast<uint32_t>(size)};
    checkDecoded(bytes, std::nullopt);
    for (const InputKind kind : {InputKind::kTransferObject, InputKind::kTransferPack})
        checkDecoded(bytes, kind);
    const BlockParts parts = listBlockParts(bytes);
    FUZZ_CHECK(isAccepted(bytes, parts) == !parts.damage);

    const HexText text = parseHexText({reinterpret_cast<const char*>(data), size});
    FUZZ_CHECK(text.problem.empty() || text.bytes.empty());
    return 0;
}
