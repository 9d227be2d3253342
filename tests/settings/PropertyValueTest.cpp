#include "settings/PropertyValue.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::toText;

std::string nativeBytes(int32_t value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

TEST(PropertyValue, TypeNumbers_AreThoseOfTheInterface) {
    EXPECT_EQ(sizeof(PropertyType), 1u);
    EXPECT_EQ(static_cast<int>(PropertyType::kInteger), 0);
    EXPECT_EQ(static_cast<int>(PropertyType::kString), 1);
    EXPECT_EQ(static_cast<int>(PropertyType::kBinary), 2);
    EXPECT_EQ(static_cast<int>(PropertyType::kUnknown), 0xFF);
}

TEST(PropertyValue, Integer_ReadAsEachType) {
    const PropertyValue value = PropertyValue::ofInt(-5);
    EXPECT_EQ(value.type, PropertyType::kInteger);
    EXPECT_EQ(value.asInt(), -5);
    EXPECT_EQ(value.asString(), "-5");
    EXPECT_EQ(toText(value.asBinary()), nativeBytes(-5));
}

TEST(PropertyValue, String_ReadAsEachType) {
    const PropertyValue value = PropertyValue::ofString("12ab");
    EXPECT_EQ(value.type, PropertyType::kString);
    EXPECT_EQ(value.asInt(), 12);
    EXPECT_EQ(value.asString(), "12ab");
    EXPECT_EQ(toText(value.asBinary()), "12ab");
}

TEST(PropertyValue, Binary_ReadAsEachType) {
    const std::string bytes = nativeBytes(0x01020304) + "more";
    const PropertyValue value = PropertyValue::ofBinary(bytes.data(), bytes.size());
    EXPECT_EQ(value.type, PropertyType::kBinary);
    EXPECT_EQ(value.asInt(), 0x01020304);
    EXPECT_EQ(value.asString(), bytes);
    EXPECT_EQ(toText(value.asBinary()), bytes);
}

TEST(PropertyValue, BinaryOfFewerThanFourBytes_AsInt_IsExtendedByZeros) {
    const std::string whole = nativeBytes(0x00000201);
    EXPECT_EQ(PropertyValue::ofBinary(whole.data(), 2).asInt(), 0x0201);
    EXPECT_EQ(PropertyValue::ofBinary(nullptr, 0).asInt(), 0);
}

TEST(PropertyValue, UnknownType_IsZeroAndEmpty) {
    const PropertyValue value;
    EXPECT_EQ(value.type, PropertyType::kUnknown);
    EXPECT_EQ(value.asInt(), 0);
    EXPECT_EQ(value.asString(), "");
    EXPECT_EQ(value.asBinary().getSize(), 0u);
}

TEST(PropertyValue, EmptyStringAndEmptyBinary_AreEmptyInEachForm) {
    EXPECT_EQ(PropertyValue::ofString("").asBinary().getSize(), 0u);
    EXPECT_EQ(PropertyValue::ofString("").asInt(), 0);
    EXPECT_EQ(PropertyValue::ofBinary(nullptr, 0).asString(), "");
    EXPECT_EQ(PropertyValue::ofBinary(nullptr, 0).asBinary().getSize(), 0u);
}

}  // namespace
}  // namespace dovrel
