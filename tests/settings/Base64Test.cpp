#include "settings/Base64.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace dovrel {
namespace {

struct Pair {
    std::string bytes;
    std::string text;
};

// The test vectors of RFC 4648, section 10, and the two digits that are neither a letter nor a number.
const Pair kPairs[] = {
    {"", ""},
    {"f", "Zg=="},
    {"fo", "Zm8="},
    {"foo", "Zm9v"},
    {"foob", "Zm9vYg=="},
    {"fooba", "Zm9vYmE="},
    {"foobar", "Zm9vYmFy"},
    {"\xFB\xFF\x00"s, "+/8A"},
};

TEST(Base64, Text_PublishedVectors) {
    for (const Pair& pair : kPairs)
        EXPECT_EQ(encodeBase64(pair.bytes), pair.text);
}

TEST(Base64, Bytes_PublishedVectors) {
    for (const Pair& pair : kPairs)
        EXPECT_EQ(decodeBase64(pair.text), pair.bytes) << pair.text;
}

TEST(Base64, Bytes_BlanksAndLineEnds_ArePassedOver) {
    EXPECT_EQ(decodeBase64(" Zm\t9v\r\nYg =\n=\n"), "foob");
}

TEST(Base64, Bytes_StrangeCharacter_IsNothing) {
    EXPECT_EQ(decodeBase64("Zm9-"), std::nullopt);
    EXPECT_EQ(decodeBase64("Zm9\xFF"), std::nullopt);
    EXPECT_EQ(decodeBase64("Zm9\0"s), std::nullopt);
}

TEST(Base64, Bytes_WrongPadding_IsNothing) {
    for (const char* text :
         {"Zg", "Zg=", "Zg===", "Zm8", "Zm8==", "Zm9v=", "=", "====", "Zg==Zg==", "Z=g=", "Z==="}) {
        EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
    }
}

TEST(Base64, Bytes_BitsAfterTheLastByte_AreNothing) {
    EXPECT_EQ(decodeBase64("Zh=="), std::nullopt);
    EXPECT_EQ(decodeBase64("Zm9="), std::nullopt);
}

}  // namespace
}  // namespace dovrel
