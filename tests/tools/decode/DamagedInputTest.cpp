// Every example of docs/protocol.md, and a transfer pack, with damage at every byte. The decoder must always
// return, and must agree with the reader of the library about which blocks are damaged.
#include <gtest/gtest.h>

#include <memory>

#include "client/exceptions/CPPException.h"
#include "serialization/StructuredByteArrayReader.h"
#include "tests/support/DocumentPage.h"
#include "tests/support/library/Bytes.h"
#include "tools/decode/BlockParts.h"
#include "tools/decode/DecodedOutput.h"
#include "tools/decode/Decoder.h"

namespace dovrel::tools {
namespace {

ByteView viewOf(const std::string& bytes) {
    return {reinterpret_cast<const uint8_t*>(bytes.data()), static_cast<uint32_t>(bytes.size())};
}

bool isAcceptedByReader(const std::string& bytes, const BlockParts& parts) {
    const CPPByteArray array = test::makeArray(bytes);
    StructuredByteArrayReader reader;
    bool isAccepted = true;
    try {
        reader.initialize(&array);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        isAccepted = false;
    }
    // The reader keeps the parts before the damage.
    for (const BlockPart& part : parts.parts)
        EXPECT_TRUE(reader.hasPart(part.tag));
    return isAccepted;
}

// Decodes the bytes as every kind, and checks that the results can be written.
void decodeAsEveryKind(const std::string& bytes) {
    for (const std::optional<InputKind> kind :
         {std::optional<InputKind>(), std::optional<InputKind>(InputKind::kTransferObject),
          std::optional<InputKind>(InputKind::kTransferPack)}) {
        const Decoded decoded = decode(viewOf(bytes), kind, 64);
        ASSERT_FALSE(toOutputText(decoded).empty());
        ASSERT_FALSE(toJson(decoded).dump().empty());
        for (const Finding& finding : decoded.findings)
            ASSERT_LE(finding.offset, bytes.size()) << finding.text;
    }
    const BlockParts parts = listBlockParts(viewOf(bytes));
    ASSERT_EQ(!parts.damage, isAcceptedByReader(bytes, parts)) << test::toHex(test::makeArray(bytes));
    ASSERT_TRUE(!parts.damage || decode(viewOf(bytes), InputKind::kBlock, 64).hasProblems());
}

void decodeWithDamage(const std::string& bytes) {
    for (size_t length = 0; length <= bytes.size(); ++length)
        decodeAsEveryKind(bytes.substr(0, length));
    for (size_t at = 0; at < bytes.size(); ++at) {
        for (const int value : {0x00, 0x7F, 0xFF}) {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(value);
            decodeAsEveryKind(damaged);
        }
    }
}

TEST(DamagedInput, ExamplesOfThePage_AreDecodedWithDamageAtEveryByte) {
    const test::DocumentPage page(DOVREL_SOURCE_FOLDER "/docs/protocol.md");
    for (const std::string& name : page.exampleNames())
        decodeWithDamage(page.example(name));
}

TEST(DamagedInput, TransferPack_IsDecodedWithDamageAtEveryByte) {
    std::string record(608, '\0');
    record[14] = 2;
    decodeWithDamage(record + "ab");
}

}  // namespace
}  // namespace dovrel::tools
