#include "settings/Properties.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <type_traits>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/Failures.h"

using namespace std::string_literals;

namespace dovrel {
namespace {

using test::failureText;

std::string bytesOf(const CPPByteArray& array) {
    return std::string(reinterpret_cast<const char*>(array.data()), array.getSize());
}

CPPByteArray arrayOf(const std::string& bytes) {
    CPPByteArray array;
    array.set(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return array;
}

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
    store.addBinary("a", arrayOf("y"));
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
    EXPECT_EQ(bytesOf(*store.getBinary("binary")), "AB");
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
    store.replaceBinary("b", arrayOf("3"));
    EXPECT_FALSE(store.contains("b"));
    EXPECT_EQ(store.size(), 0u);
}

TEST(Properties, Replace_KeyIsThere_GetsTheNewValueWhateverItsType) {
    Properties store;
    store.addInt("a", 1);
    store.addInt("other", 9);
    store.replaceString("a", "2");
    EXPECT_EQ(store.getString("a"), "2");
    store.replaceBinary("a", "three", 5);
    EXPECT_EQ(store.getString("a"), "three");
    store.replaceBinary("a", arrayOf("four"));
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

TEST(Properties, Remove_TellsWhetherTheKeyWasThere) {
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

TEST(Properties, GetInt_StringOfDigitsThenLetters_IsTheDigits) {
    Properties store;
    store.addString("digits", "12abc");
    store.addString("letters", "abc");
    EXPECT_EQ(store.getInt("digits"), 12);
    EXPECT_EQ(store.getInt("letters"), 0);
}

TEST(Properties, GetBool_IsTrueForNumbersAboveZero) {
    Properties store;
    store.addInt("one", 1);
    store.addInt("zero", 0);
    store.addInt("negative", -1);
    store.addString("text zero", "0");
    store.addString("text two", "2");
    EXPECT_TRUE(store.getBool("one"));
    EXPECT_FALSE(store.getBool("zero"));
    EXPECT_FALSE(store.getBool("negative"));
    EXPECT_FALSE(store.getBool("text zero"));
    EXPECT_TRUE(store.getBool("text two"));
}

TEST(Properties, GetString_OfTheIntegerMinusFive_IsItsDecimalText) {
    Properties store;
    store.addInt("a", -5);
    EXPECT_EQ(store.getString("a"), "-5");
}

TEST(Properties, GetBinary_IsANewArrayOfTheCallers) {
    Properties store;
    store.addBinary("a", "\0b\xFF", 3);
    const std::unique_ptr<CPPByteArray> first = store.getBinary("a");
    first->setByte(0, 'x');
    EXPECT_EQ(bytesOf(*store.getBinary("a")), "\0b\xFF"s);
}

TEST(Properties, Getters_MissingKey_ThrowAMessageThatNamesKeyAndType) {
    const Properties store;
    EXPECT_EQ(failureText([&] { store.getInt("k"); }), "Could not find key: 'k' for integer value!");
    EXPECT_EQ(failureText([&] { store.getBool("k"); }), "Could not find key: 'k' for boolean value!");
    EXPECT_EQ(failureText([&] { store.getString("k"); }), "Could not find key: 'k' for string value!");
    EXPECT_EQ(failureText([&] { store.getBinary("k"); }), "Could not find key: 'k' for binary value!");
}

TEST(Properties, GettersByIndex_StepInKeyOrder) {
    Properties store;
    store.addString("b", "second");
    store.addString("a", "first");
    EXPECT_EQ(store.getKeyAt(0), "a");
    EXPECT_EQ(store.getKeyAt(1), "b");
    EXPECT_EQ(bytesOf(*store.getBinaryAt(1)), "second");
}

TEST(Properties, GetBinaryAt_NegativeOrZeroIndex_IsTheFirstEntry) {
    Properties store;
    store.addString("a", "first");
    store.addString("b", "second");
    EXPECT_EQ(bytesOf(*store.getBinaryAt(0)), "first");
    EXPECT_EQ(bytesOf(*store.getBinaryAt(-1)), "first");
    EXPECT_EQ(bytesOf(*store.getBinaryAt(INT32_MIN)), "first");
    EXPECT_EQ(store.getKeyAt(-7), "a");
}

TEST(Properties, GetBinaryAt_IndexOfTheNumberOfEntries_ThrowsIndexOutOfBounds) {
    Properties store;
    store.addInt("a", 1);
    store.addInt("b", 1);
    EXPECT_EQ(failureText([&] { store.getBinaryAt(2); }), "Index out of bounds!'");
    EXPECT_EQ(failureText([&] { store.getKeyAt(2); }), "Index out of bounds!'");
    EXPECT_EQ(failureText([&] { store.getKeyAt(INT32_MAX); }), "Index out of bounds!'");
}

TEST(Properties, GettersByIndex_EmptyStore_ThrowIndexOutOfBounds) {
    const Properties store;
    EXPECT_EQ(failureText([&] { store.getBinaryAt(0); }), "Index out of bounds!'");
    EXPECT_EQ(failureText([&] { store.getKeyAt(-1); }), "Index out of bounds!'");
}

TEST(Properties, Find_MissingKey_IsFalseAndLeavesTheOutput) {
    const Properties store;
    int32_t number = 7;
    std::string text = "old";
    CPPByteArray bytes = arrayOf("old");
    EXPECT_FALSE(store.findInt("k", number));
    EXPECT_FALSE(store.findString("k", text));
    EXPECT_FALSE(store.findBinary("k", bytes));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(text, "old");
    EXPECT_EQ(bytesOf(bytes), "old");
}

TEST(Properties, Find_KeyIsThere_ConvertsAsTheGettersDo) {
    Properties store;
    store.addString("a", "42x");
    int32_t number = 0;
    std::string text;
    CPPByteArray bytes;
    EXPECT_TRUE(store.findInt("a", number));
    EXPECT_TRUE(store.findString("a", text));
    EXPECT_TRUE(store.findBinary("a", bytes));
    EXPECT_EQ(number, 42);
    EXPECT_EQ(text, "42x");
    EXPECT_EQ(bytesOf(bytes), "42x");
}

TEST(Properties, FindBinary_EmptyValue_EmptiesTheOutput) {
    Properties store;
    store.addString("a", "");
    CPPByteArray bytes = arrayOf("old");
    EXPECT_TRUE(store.findBinary("a", bytes));
    EXPECT_EQ(bytes.getSize(), 0u);
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
