#include "InterProcessCommunication/TransferPack.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::makeArray;

// Returns a record in which every byte is the low part of its offset, except for the sizes and the tokens.
std::string record() {
    std::string bytes;
    for (int i = 0; i < 611; ++i)
        bytes.push_back(static_cast<char>(i));
    bytes[14] = 3;  // three bytes of additional data
    bytes[15] = 0;
    bytes[224] = 3;     // token 1: three bytes, of which two are printed
    bytes[352] = '\0';  // token 2 is empty
    return bytes;
}

std::string makeDump(const TransferPack& pack) {
    char* text = nullptr;
    size_t length = 0;
    std::FILE* const output = open_memstream(&text, &length);
    pack.dump(output);
    std::fclose(output);
    const std::string result(text, length);
    std::free(text);
    return result;
}

constexpr char kExpectedDump[] =
    "\n"
    "New TransferPack\n"
    "Status:              100\n"
    "Version:             504\n"
    "DataSize             302\n"
    "Mode                 706\n"
    "TPLevel              d0c\n"
    "AddDataSize            3\n"
    "TAN:                    8  9  a  b \n"
    "SourceObjID:           20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f \n"
    "SourceClassID:         30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f \n"
    "DestinationObjID:      50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f \n"
    "DestinationClassID:    60 61 62 63 64 65 66 67 68 69 6a 6b 6c 6d 6e 6f \n"
    "MediatorObjID:        80 81 82 83 84 85 86 87 88 89 8a 8b 8c 8d 8e 8f \n"
    "MediatorClassID:      90 91 92 93 94 95 96 97 98 99 9a 9b 9c 9d 9e 9f \n"
    "MediatorValue:        a0 a1 a2 a3 a4 a5 a6 a7 a8 a9 aa ab ac ad ae af \n"
    "Digest A:             b0 b1 b2 b3 b4 b5 b6 b7 b8 b9 ba bb bc bd be bf \n"
    "Digest B:             c0 c1 c2 c3 c4 c5 c6 c7 c8 c9 ca cb cc cd ce cf \n"
    "Digest C:             d0 d1 d2 d3 d4 d5 d6 d7 d8 d9 da db dc dd de df \n"
    "Token 1:               3 e1 e2 \n"
    "Token 2:              \n";

TEST(TransferPack, Fields_AreLittleEndianAtTheirPlaces) {
    const TransferPack pack(makeArray(record()));
    EXPECT_EQ(pack.getStatus(), 0x0100);
    EXPECT_EQ(pack.getDataSize(), 0x0302);
    EXPECT_EQ(pack.getVersion(), 0x0504);
    EXPECT_EQ(pack.getMode(), 0x0706);
    EXPECT_EQ(pack.getTPLevel(), 0x0D0C);
    EXPECT_EQ(pack.getAddDataSize(), 3);
}

TEST(TransferPack, TotalSize_Is608AndTheAdditionalData) {
    EXPECT_EQ(TransferPack(makeArray(record())).getTotalSize(), 611u);
    std::string largest = record();
    largest[14] = largest[15] = '\xFF';
    EXPECT_EQ(TransferPack(makeArray(largest)).getTotalSize(), 608u + 65535u);
}

TEST(TransferPack, AdditionalData_BeginAtOffset608) {
    const TransferPack pack(makeArray(record()));
    uint16_t size = 0;
    const uint8_t* const data = pack.getAdditionalData(size);
    ASSERT_EQ(size, 3);
    // The low bytes of 608, 609 and 610.
    EXPECT_EQ(std::string(data, data + size), "\x60\x61\x62");
}

TEST(TransferPack, RecordThatIsCutShort_ReadsAsZerosToItsTotalSize) {
    const TransferPack pack(makeArray(record().substr(0, 16)));
    EXPECT_EQ(pack.getTPLevel(), 0x0D0C);
    uint16_t size = 0;
    const uint8_t* const data = pack.getAdditionalData(size);
    EXPECT_EQ(std::string(data, data + size), std::string(3, '\0'));
    EXPECT_EQ(TransferPack(CPPByteArray()).getTotalSize(), 608u);
}

TEST(TransferPack, Dump_IsExactlyThisText) {
    EXPECT_EQ(makeDump(TransferPack(makeArray(record()))), kExpectedDump);
}

TEST(TransferPack, Dump_GoesToStandardOutputUnlessToldOtherwise) {
    testing::internal::CaptureStdout();
    TransferPack(makeArray(record())).dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), kExpectedDump);
}

TEST(TransferPack, Dump_OfATokenLongerThanItsPlace_StopsAt128Bytes) {
    std::string bytes = record();
    bytes[352] = '\xC8';
    std::string expected = "Token 2:              c8 ";
    for (int i = 353; i < 480; ++i) {
        char text[8];
        std::snprintf(text, sizeof text, "%2x ", static_cast<unsigned>(i & 0xFF));
        expected += text;
    }
    const std::string dump = makeDump(TransferPack(makeArray(bytes)));
    EXPECT_EQ(dump.substr(dump.find("Token 2:")), expected + "\n");
}

}  // namespace
}  // namespace dovrel
