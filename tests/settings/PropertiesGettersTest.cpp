// The values that Properties returns, by key and by index.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "settings/Properties.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

using namespace std::string_literals;

namespace dovrel {
namespace {

using test::failureText;
using test::makeArray;
using test::toText;

TEST(PropertiesGetters, GetInt_StringOfDigitsThenLetters_IsTheDigits) {
    Properties store;
    store.addString("digits", "12abc");
    store.addString("letters", "abc");
    EXPECT_EQ(store.getInt("digits"), 12);
    EXPECT_EQ(store.getInt("letters"), 0);
}

TEST(PropertiesGetters, GetBool_IsTrueForNumbersAboveZero) {
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

TEST(PropertiesGetters, GetString_OfTheIntegerMinusFive_IsItsDecimalText) {
    Properties store;
    store.addInt("a", -5);
    EXPECT_EQ(store.getString("a"), "-5");
}

TEST(PropertiesGetters, GetBinary_IsANewArrayOfTheCallers) {
    Properties store;
    store.addBinary("a", "\0b\xFF", 3);
    const std::unique_ptr<CPPByteArray> first = store.getBinary("a");
    first->setByte(0, 'x');
    EXPECT_EQ(toText(*store.getBinary("a")), "\0b\xFF"s);
}

TEST(PropertiesGetters, Getters_MissingKey_ThrowAMessageThatNamesKeyAndType) {
    const Properties store;
    EXPECT_EQ(failureText([&] { store.getInt("k"); }), "Could not find key: 'k' for integer value!");
    EXPECT_EQ(failureText([&] { store.getBool("k"); }), "Could not find key: 'k' for boolean value!");
    EXPECT_EQ(failureText([&] { store.getString("k"); }), "Could not find key: 'k' for string value!");
    EXPECT_EQ(failureText([&] { store.getBinary("k"); }), "Could not find key: 'k' for binary value!");
}

TEST(PropertiesGetters, GettersByIndex_StepInKeyOrder) {
    Properties store;
    store.addString("b", "second");
    store.addString("a", "first");
    EXPECT_EQ(store.getKeyAt(0), "a");
    EXPECT_EQ(store.getKeyAt(1), "b");
    EXPECT_EQ(toText(*store.getBinaryAt(1)), "second");
}

TEST(PropertiesGetters, GetBinaryAt_NegativeOrZeroIndex_IsTheFirstEntry) {
    Properties store;
    store.addString("a", "first");
    store.addString("b", "second");
    EXPECT_EQ(toText(*store.getBinaryAt(0)), "first");
    EXPECT_EQ(toText(*store.getBinaryAt(-1)), "first");
    EXPECT_EQ(toText(*store.getBinaryAt(INT32_MIN)), "first");
    EXPECT_EQ(store.getKeyAt(-7), "a");
}

TEST(PropertiesGetters, GetBinaryAt_IndexOfTheNumberOfEntries_ThrowsIndexOutOfBounds) {
    Properties store;
    store.addInt("a", 1);
    store.addInt("b", 1);
    EXPECT_EQ(failureText([&] { store.getBinaryAt(2); }), "Index out of bounds!'");
    EXPECT_EQ(failureText([&] { store.getKeyAt(2); }), "Index out of bounds!'");
    EXPECT_EQ(failureText([&] { store.getKeyAt(INT32_MAX); }), "Index out of bounds!'");
}

TEST(PropertiesGetters, GettersByIndex_EmptyStore_ThrowIndexOutOfBounds) {
    const Properties store;
    EXPECT_EQ(failureText([&] { store.getBinaryAt(0); }), "Index out of bounds!'");
    EXPECT_EQ(failureText([&] { store.getKeyAt(-1); }), "Index out of bounds!'");
}

TEST(PropertiesGetters, Find_MissingKey_IsFalseAndLeavesTheOutput) {
    const Properties store;
    int32_t number = 7;
    std::string text = "old";
    CPPByteArray bytes = makeArray("old");
    EXPECT_FALSE(store.findInt("k", number));
    EXPECT_FALSE(store.findString("k", text));
    EXPECT_FALSE(store.findBinary("k", bytes));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(text, "old");
    EXPECT_EQ(toText(bytes), "old");
}

TEST(PropertiesGetters, Find_KeyIsThere_ConvertsAsTheGettersDo) {
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
    EXPECT_EQ(toText(bytes), "42x");
}

TEST(PropertiesGetters, FindBinary_EmptyValue_EmptiesTheOutput) {
    Properties store;
    store.addString("a", "");
    CPPByteArray bytes = makeArray("old");
    EXPECT_TRUE(store.findBinary("a", bytes));
    EXPECT_EQ(bytes.getSize(), 0u);
}

}  // namespace
}  // namespace dovrel
