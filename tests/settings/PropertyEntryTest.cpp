#include "settings/PropertyEntry.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
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

TEST(PropertyEntry, Value_OfAnInteger_BothEndsOfTheRange) {
    EXPECT_EQ(PropertyEntry("k", PropertyValue::ofInt(INT32_MIN)).value().intValue, INT32_MIN);
    EXPECT_EQ(PropertyEntry("k", PropertyValue::ofInt(INT32_MAX)).value().intValue, INT32_MAX);
}

TEST(PropertyEntry, ReferringToAText_FindsKeyAndValueInIt) {
    const std::string text = "//key\nSTR:text\n//number\nINT: -12x\n";
    const std::string_view view = text;
    const PropertyEntry string(text, view.substr(2, 3), PropertyType::kString, view.substr(10, 4));
    EXPECT_EQ(string.key(), "key");
    EXPECT_EQ(string.key().data(), text.data() + 2);
    EXPECT_EQ(string.value().stringValue, "text");
    const PropertyEntry number(text, view.substr(17, 6), PropertyType::kInteger, view.substr(28, 5));
    EXPECT_EQ(number.key(), "number");
    EXPECT_EQ(number.value().intValue, -12);
}

TEST(PropertyEntry, CopyOfAReferringEntry_OwnsItsBytes) {
    auto text = std::make_unique<std::string>("key=text that is long enough to lie in the heap");
    const std::string_view view = *text;
    const PropertyEntry referring(view, view.substr(0, 3), PropertyType::kString, view.substr(4));
    const PropertyEntry copy(referring);
    text.reset();
    EXPECT_EQ(copy.key(), "key");
    EXPECT_EQ(copy.value().stringValue, "text that is long enough to lie in the heap");
}

TEST(PropertyEntry, SavedForm_OfIntegersAndStrings_IsKeyLineAndValueLine) {
    EXPECT_EQ(PropertyEntry("k", PropertyValue::ofInt(-7)).savedForm(), "//k\nINT:-7\n");
    EXPECT_EQ(PropertyEntry("", PropertyValue::ofString("")).savedForm(), "//\nSTR:\n");
    const PropertyEntry original("key", PropertyValue::ofString("a\nb"));
    EXPECT_EQ(original.savedForm(), "//key\nSTR:a\nb\n");
    EXPECT_EQ(PropertyEntry(original).savedForm(), original.savedForm());
}

TEST(PropertyEntry, SavedForm_OfBytes_IsEmpty) {
    EXPECT_EQ(PropertyEntry("k", PropertyValue::ofBinary("ab", 2)).savedForm(), "");
}

TEST(PropertyEntry, SavedForm_OfAText_IsThePieceOfTheText) {
    const std::string text = "//k\nSTR:text\n";
    const std::string_view view = text;
    const PropertyEntry entry(text, view.substr(2, 1), PropertyType::kString, view.substr(8, 4));
    EXPECT_EQ(entry.savedForm(), text);
    EXPECT_EQ(entry.savedForm().data(), text.data());
    EXPECT_EQ(PropertyEntry(entry).savedForm(), text);
}

TEST(PropertyEntry, SavedForm_OfATextThatIsWrittenOtherwise_IsEmpty) {
    const std::string text = "//k\nINT:07\n";
    const std::string_view view = text;
    EXPECT_EQ(PropertyEntry(text, view.substr(2, 1), PropertyType::kInteger, view.substr(8, 2)).savedForm(),
              "");
    const std::string_view cut = view.substr(0, 9);
    EXPECT_EQ(PropertyEntry(cut, cut.substr(2, 1), PropertyType::kInteger, cut.substr(8, 1)).savedForm(), "");
}

TEST(PropertyEntry, CanReferTo_BytesLessThan4GiBApart) {
    const std::string_view text = "key=text";
    EXPECT_TRUE(PropertyEntry::canReferTo(text.substr(0, 3), text.substr(4)));
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
