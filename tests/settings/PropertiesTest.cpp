#include "settings/Properties.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <type_traits>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

using namespace std::string_literals;

namespace dovrel {
namespace {

using test::failureText;
using test::makeArray;
using test::toText;

TEST(Properties, IsPolymorphicWithAVirtualDestructor) {
    EXPECT_TRUE(std::is_polymorphic_v<Properties>);
    EXPECT_TRUE(std::has_virtual_destructor_v<Properties>);
}

TEST(Properties, AddInt_KeyIsThereAlready_FirstValueStays) {
    Properties store;
    store.addInt("a", 1);
    store.addInt("a", 2);
    EXPECT_EQ(store.getInt("a"), 1);
}

TEST(Properties, Add_KeyIsThereWithAnotherType_FirstValueStays) {
    Properties store;
    store.addString("a", "first");
    store.addInt("a", 2);
    store.addBinary("a", "x", 1);
    store.addBinary("a", makeArray("y"));
    EXPECT_EQ(store.getString("a"), "first");
    EXPECT_EQ(store.size(), 1u);
}

TEST(Properties, AddParsed_OfAKnownType_AddsTheValueAndReturnsTrue) {
    Properties store;
    EXPECT_TRUE(store.addParsed("integer", PropertyType::kInteger, "-12"));
    EXPECT_TRUE(store.addParsed("string", PropertyType::kString, "text"));
    EXPECT_TRUE(store.addParsed("binary", PropertyType::kBinary, "41 42"));
    EXPECT_EQ(store.getInt("integer"), -12);
    EXPECT_EQ(store.getString("string"), "text");
    EXPECT_EQ(toText(*store.getBinary("binary")), "AB");
}

TEST(Properties, AddParsed_OfAnUnknownType_AddsNothingAndReturnsFalse) {
    Properties store;
    EXPECT_FALSE(store.addParsed("a", PropertyType::kUnknown, "1"));
    EXPECT_EQ(store.size(), 0u);
}

TEST(Properties, Add_KeysInAnyOrder_AreKeptByTheirBytesShorterOneFirst) {
    Properties store;
    for (const char* key : {"b", "ab", "\xFF", "a", "", "B", "ab"})
        store.addInt(key, 0);
    std::string order;
    for (int32_t i = 0; i < static_cast<int32_t>(store.size()); ++i)
        order += store.getKeyAt(i) + "|";
    EXPECT_EQ(order, "|B|a|ab|b|\xFF|");
}

TEST(Properties, ReplaceInt_KeyIsNotThere_AddsNothing) {
    Properties store;
    store.replaceInt("b", 3);
    store.replaceString("b", "3");
    store.replaceBinary("b", "3", 1);
    store.replaceBinary("b", makeArray("3"));
    EXPECT_FALSE(store.contains("b"));
    EXPECT_EQ(store.size(), 0u);
}

TEST(Properties, Replace_KeyIsThere_HasTheNewValueWhateverItsType) {
    Properties store;
    store.addInt("a", 1);
    store.addInt("other", 9);
    store.replaceString("a", "2");
    EXPECT_EQ(store.getString("a"), "2");
    store.replaceBinary("a", "three", 5);
    EXPECT_EQ(store.getString("a"), "three");
    store.replaceBinary("a", makeArray("four"));
    EXPECT_EQ(store.getString("a"), "four");
    store.replaceInt("a", 5);
    EXPECT_EQ(store.getString("a"), "5");
    EXPECT_EQ(store.getInt("other"), 9);
    EXPECT_EQ(store.size(), 2u);
}

TEST(Properties, ReplaceBinary_ByAnEmptyArray_LeavesNoBytes) {
    Properties store;
    store.addBinary("a", "old", 3);
    store.replaceBinary("a", CPPByteArray());
    EXPECT_EQ(store.getBinary("a")->getSize(), 0u);
}

TEST(Properties, Remove_ReturnsWhetherTheKeyWasThere) {
    Properties store;
    store.addInt("a", 1);
    EXPECT_TRUE(store.remove("a"));
    EXPECT_FALSE(store.remove("a"));
    EXPECT_FALSE(store.contains("a"));
}

TEST(Properties, Clear_ErasesEverything) {
    Properties store;
    store.addInt("a", 1);
    store.addInt("b", 1);
    store.clear();
    EXPECT_EQ(store.size(), 0u);
    EXPECT_FALSE(store.contains("a"));
}

TEST(Properties, ToText_OneValueAsSaveWritesIt) {
    EXPECT_EQ(Properties::toText(PropertyValue::ofInt(-12)), "INT:-12");
    EXPECT_EQ(Properties::toText(PropertyValue::ofString(" a:b")), "STR: a:b");
    EXPECT_EQ(Properties::toText(PropertyValue::ofBinary("\x00\xAB\x0F", 3)), "BAR:00AB0F");
    EXPECT_EQ(Properties::toText(PropertyValue::ofBinary(nullptr, 0)), "BAR:");
}

TEST(Properties, ToText_UnknownType_IsEmpty) {
    EXPECT_EQ(Properties::toText(PropertyValue()), "");
}

TEST(Properties, KeyDigest_SumOfBytesTimesPositions_InUpperCaseHexadecimal) {
    EXPECT_EQ(Properties::keyDigest(""), "0");
    // 1 x 97
    EXPECT_EQ(Properties::keyDigest("a"), "61");
    // 1 x 97 + 2 x 98 + 3 x 99 = 590
    EXPECT_EQ(Properties::keyDigest("abc"), "24E");
    // Bytes are unsigned: 1 x 255 + 2 x 128 = 511
    EXPECT_EQ(Properties::keyDigest("\xFF\x80"), "1FF");
}

TEST(Properties, KeyDigest_SumBeyond32Bits_Wraps) {
    // 255 x (1 + ... + 10000) = 255 x 50005000 = 12751275000 = 2 x 2^32 + 4161340408
    EXPECT_EQ(Properties::keyDigest(std::string(10000, '\xFF')), "F80903F8");
}

TEST(Properties, OpenForReading_FileThatIsThere_CanBeRead) {
    const test::TemporaryFolder folder;
    folder.write("file", "A\r\nB");
    const OpenFile file = Properties::openForReading(folder.path("file"));
    char content[8] = {};
    EXPECT_EQ(std::fread(content, 1, sizeof content, file.get()), 4u);
    EXPECT_EQ(std::string(content), "A\r\nB");
}

TEST(Properties, OpenForReading_NoSuchFile_ThrowsAMessageThatNamesThePath) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path("missing");
    EXPECT_EQ(failureText([&] { Properties::openForReading(path); }),
              "Could not open file for reading: " + path);
}

TEST(Properties, Copies_AreIndependent) {
    Properties first;
    first.addString("a", "1");
    Properties copy = first;
    copy.replaceString("a", "2");
    EXPECT_EQ(first.getString("a"), "1");
    first = copy;
    EXPECT_EQ(first.getString("a"), "2");
}

TEST(Properties, CopyAssignment_OfAStoreWithAnEmptyBinaryValue_TakesItOver) {
    Properties target;
    target.addBinary("a", "old", 3);
    Properties source;
    source.addBinary("a", nullptr, 0);
    target = source;
    EXPECT_EQ(target.getBinary("a")->getSize(), 0u);
}

}  // namespace
}  // namespace dovrel
