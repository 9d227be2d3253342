#include "settings/PropertyEntry.h"

#include <gtest/gtest.h>

#include <string>

namespace dovrel {
namespace {

TEST(PropertyEntry, Construction_CopiesKeyAndBytes) {
    std::string key = "key";
    std::string bytes = "text";
    const PropertyEntry entry(key, PropertyValue::ofString(bytes));
    key = "???";
    bytes = "????";
    EXPECT_EQ(entry.key(), "key");
    EXPECT_EQ(entry.value().type, PropertyType::kString);
    EXPECT_EQ(entry.value().stringValue, "text");
}

TEST(PropertyEntry, Value_OfEachType_ComesBack) {
    EXPECT_EQ(PropertyEntry("k", PropertyValue::ofInt(-7)).value().asInt(), -7);
    EXPECT_EQ(PropertyEntry("k", PropertyValue::ofString("")).value().type, PropertyType::kString);
    const PropertyEntry binary("k", PropertyValue::ofBinary("a\0b", 3));
    EXPECT_EQ(binary.value().type, PropertyType::kBinary);
    EXPECT_EQ(binary.value().binaryValue, std::string_view("a\0b", 3));
    EXPECT_EQ(PropertyEntry("k", PropertyValue()).value().type, PropertyType::kUnknown);
}

TEST(PropertyEntry, EmptyKeyAndEmptyValue_AreKept) {
    const PropertyEntry entry("", PropertyValue::ofBinary(nullptr, 0));
    EXPECT_EQ(entry.key(), "");
    EXPECT_EQ(entry.value().binaryValue, "");
}

TEST(PropertyEntry, Copy_OwnsItsBytes) {
    auto first = std::make_unique<PropertyEntry>("key", PropertyValue::ofString("text"));
    const PropertyEntry copy(*first);
    first.reset();
    EXPECT_EQ(copy.key(), "key");
    EXPECT_EQ(copy.value().stringValue, "text");
}

TEST(PropertyEntry, KeyOrder_IsThatOfTheBytesShorterOneFirst) {
    const PropertyEntry::KeyOrder isBefore;
    const PropertyEntry a("a", PropertyValue::ofString("z"));
    const PropertyEntry ab("ab", PropertyValue::ofString("y"));
    const PropertyEntry high("\xFF", PropertyValue::ofString("x"));
    EXPECT_TRUE(isBefore(a, ab));
    EXPECT_FALSE(isBefore(ab, a));
    EXPECT_TRUE(isBefore(ab, high));
    EXPECT_FALSE(isBefore(a, std::string_view("a")));
    EXPECT_TRUE(isBefore(std::string_view("a"), ab));
}

}  // namespace
}  // namespace dovrel
