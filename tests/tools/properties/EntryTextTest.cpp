#include "tools/properties/EntryText.h"

#include <gtest/gtest.h>

namespace dovrel::tools {
namespace {

TextEntry makeEntry(PropertyType type, std::string_view value) {
    TextEntry entry;
    entry.key = "key";
    entry.type = type;
    entry.value = value;
    return entry;
}

TEST(EntryText, Entries_AreOneLineInTheFormOfTheirType) {
    EXPECT_EQ(entryText(makeEntry(PropertyType::kInteger, " 5 apples")), "key = 5");
    EXPECT_EQ(entryText(makeEntry(PropertyType::kString,
                                  "gr\x9A\xA7"
                                  "er\x1B")),
              "key = \"größer\\x1B\"");
    EXPECT_EQ(entryText(makeEntry(PropertyType::kBinary, "6 1\n62")), "key = 2 bytes: 61 62 \"ab\"");
}

TEST(EntryText, BareValue_IsTheStoredValue) {
    EXPECT_EQ(bareValue(makeEntry(PropertyType::kInteger, "-5")), "-5");
    EXPECT_EQ(bareValue(makeEntry(PropertyType::kString, "gr\x9A")), "gr\x9A");
    EXPECT_EQ(bareValue(makeEntry(PropertyType::kBinary, "00\nff")), "00FF");
}

}  // namespace
}  // namespace dovrel::tools
