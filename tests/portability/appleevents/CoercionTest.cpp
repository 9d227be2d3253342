#include "portability/appleevents/Coercion.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace portability;

namespace {

template <class Number>
std::string raw(Number number) {
    return std::string(reinterpret_cast<const char*>(&number), sizeof number);
}

// Returns the bytes of the result; "(none)" if there is no such conversion.
std::string coerced(DescType from, const std::string& bytes, DescType to) {
    CoercedValue result;
    if (!coerce(from, bytes.data(), bytes.size(), to, result)) return "(none)";
    return std::string(reinterpret_cast<const char*>(result.bytes.data()), result.size);
}

}  // namespace

TEST(Coercion, WholeNumbers_AmongEachOther) {
    EXPECT_EQ(coerced(typeSInt16, raw(int16_t{-2}), typeSInt32), raw(int32_t{-2}));
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{-2}), typeSInt64), raw(int64_t{-2}));
    EXPECT_EQ(coerced(typeSInt64, raw(int64_t{70000}), typeSInt32), raw(int32_t{70000}));
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{7}), typeUInt32), raw(uint32_t{7}));
    EXPECT_EQ(coerced(typeUInt32, raw(uint32_t{0xFFFFFFFF}), typeSInt64), raw(int64_t{0xFFFFFFFF}));
}

TEST(Coercion, NumberThatDoesNotFit_HasNone) {
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{32768}), typeSInt16), "(none)");
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{-32769}), typeSInt16), "(none)");
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{-1}), typeUInt32), "(none)");
    EXPECT_EQ(coerced(typeUInt32, raw(uint32_t{0x80000000}), typeSInt32), "(none)");
    EXPECT_EQ(coerced(typeChar, "2147483648", typeSInt32), "(none)");
    EXPECT_EQ(coerced(typeChar, "9223372036854775808", typeSInt64), "(none)");
}

TEST(Coercion, NumberOfAWrongSize_HasNone) {
    EXPECT_EQ(coerced(typeSInt32, "abc", typeSInt16), "(none)");
    EXPECT_EQ(coerced(typeSInt16, raw(int32_t{5}), typeSInt32), "(none)");
}

TEST(Coercion, NumbersAndDecimalText) {
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{-1708}), typeChar), "-1708");
    EXPECT_EQ(coerced(typeSInt64, raw(INT64_MIN), typeUTF8Text), "-9223372036854775808");
    EXPECT_EQ(coerced(typeChar, "-1708", typeSInt32), raw(int32_t{-1708}));
    EXPECT_EQ(coerced(typeUTF8Text, "12", typeSInt16), raw(int16_t{12}));
}

TEST(Coercion, TextThatIsNoNumber_HasNone) {
    for (const char* text : {"", " 1", "1 ", "1.5", "0x1", "one", "+1", "--1"}) {
        EXPECT_EQ(coerced(typeChar, text, typeSInt32), "(none)") << text;
    }
}

TEST(Coercion, Booleans) {
    EXPECT_EQ(coerced(typeTrue, "", typeBoolean), raw(uint8_t{1}));
    EXPECT_EQ(coerced(typeFalse, "", typeBoolean), raw(uint8_t{0}));
    EXPECT_EQ(coerced(typeBoolean, raw(uint8_t{1}), typeTrue), "");
    EXPECT_EQ(coerced(typeBoolean, raw(uint8_t{1}), typeFalse), "(none)");
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{5}), typeBoolean), raw(uint8_t{1}));
}

TEST(Coercion, Codes_AndTheirText) {
    EXPECT_EQ(coerced(typeType, raw(uint32_t{'aevt'}), typeChar), "aevt");
    EXPECT_EQ(coerced(typeChar, "aevt", typeType), raw(uint32_t{'aevt'}));
    EXPECT_EQ(coerced(typeType, raw(uint32_t{'aevt'}), typeEnumerated), raw(uint32_t{'aevt'}));
    EXPECT_EQ(coerced(typeChar, "abc", typeType), "(none)");
    EXPECT_EQ(coerced(typeChar, "abcde", typeType), "(none)");
    EXPECT_EQ(coerced(typeType, raw(uint32_t{'aevt'}), typeSInt32), "(none)");
}

TEST(Coercion, AllElse_HasNone) {
    EXPECT_EQ(coerced('priv', "abcd", typeChar), "(none)");
    EXPECT_EQ(coerced(typeChar, "abcd", 'priv'), "(none)");
    EXPECT_EQ(coerced('priv', "abcd", typeSInt32), "(none)");
    EXPECT_EQ(coerced(typeSInt32, raw(int32_t{5}), typeAEList), "(none)");
    EXPECT_EQ(coerced(typeChar, "abcd", typeUTF8Text), "(none)");
}
