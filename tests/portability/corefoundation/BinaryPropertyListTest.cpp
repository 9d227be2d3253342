#include "portability/corefoundation/BinaryPropertyList.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/BinaryList.h"

namespace {

using dovrel::test::arrayObject;
using dovrel::test::asciiObject;
using dovrel::test::bigEndian;
using dovrel::test::binaryList;
using dovrel::test::binaryListBody;
using dovrel::test::BinaryTrailer;
using dovrel::test::countedObject;
using dovrel::test::dictionaryObject;
using dovrel::test::references;
using dovrel::test::utf16Object;

using portability::kArrayKind;
using portability::kDictionaryKind;
using portability::kStringKind;
using portability::Object;
using portability::ObjectHolder;

class BinaryPropertyList : public testing::Test {
  protected:
    static ObjectHolder readValue(const std::string& document) {
        return portability::readBinaryPropertyList(document);
    }
    static ObjectHolder parseObjects(const std::vector<std::string>& objects) {
        return readValue(binaryList(objects));
    }

    static bool isRefused(const std::vector<std::string>& objects) { return !parseObjects(objects); }

    // Builds the list with a trailer that `change` has modified.
    template <typename Change>
    static bool isRefusedWith(const Change& change) {
        BinaryTrailer trailer;
        const std::string body = binaryListBody({arrayObject({1}), asciiObject("a")}, trailer);
        change(trailer);
        return !readValue(body + trailer.bytes());
    }

    // Returns "(none)" for anything except a string.
    static std::string textIn(const std::vector<std::string>& objects) {
        const ObjectHolder value = parseObjects(objects);
        const bool isString = value && value.get()->kind() == kStringKind;
        return isString ? portability::toUtf8(value.get()) : "(none)";
    }

    // Returns the value of the only object, which must be of that class.
    template <typename Value>
    static const Value& in(const ObjectHolder& holder) {
        return dynamic_cast<const Value&>(*holder.get());
    }
};

// Returns a chain of arrays in which each array contains the next one.
std::vector<std::string> nestedArrays(uint64_t levels) {
    std::vector<std::string> objects;
    for (uint64_t level = 1; level < levels; ++level)
        objects.push_back(arrayObject({level}));
    objects.push_back(arrayObject({}));
    return objects;
}

}  // namespace

TEST_F(BinaryPropertyList, IsBinary_ByItsFirstBytes) {
    EXPECT_TRUE(portability::isBinaryPropertyList("bplist00"));
    EXPECT_TRUE(portability::isBinaryPropertyList("bplist01 and more"));
    EXPECT_FALSE(portability::isBinaryPropertyList("bplist"));
    EXPECT_FALSE(portability::isBinaryPropertyList("<plist/>"));
    EXPECT_FALSE(portability::isBinaryPropertyList(""));
}

TEST_F(BinaryPropertyList, Strings_AsciiAndUtf16OfAnyLength_AreRead) {
    EXPECT_EQ(textIn({asciiObject("Mac OS X")}), "Mac OS X");
    EXPECT_EQ(textIn({asciiObject("")}), "");
    EXPECT_EQ(textIn({utf16Object(std::string("\0G\0r\0\xFC\0\xDF\0e\x65\xE5", 12))}),
              "Gr\xC3\xBC\xC3\x9F"
              "e\xE6\x97\xA5");
    const std::string longText(70000, 'x');
    EXPECT_EQ(textIn({asciiObject(longText)}), longText);
}

TEST_F(BinaryPropertyList, Numbers_OfEveryWidth_AreRead) {
    const auto integer = [](const std::string& object) {
        return in<__CFNumber>(parseObjects({object})).integer;
    };
    EXPECT_EQ(integer("\x10\xFE"), 254);
    EXPECT_EQ(integer("\x11\xFF\xFE"), 65534);
    EXPECT_EQ(integer("\x12\xFF\xFF\xFF\xFE"), 4294967294LL);
    EXPECT_EQ(integer("\x13" + bigEndian(uint64_t(-2), 8)), -2);
    EXPECT_EQ(static_cast<uint64_t>(integer("\x14" + bigEndian(uint64_t(1) << 63, 16))), uint64_t(1) << 63);
    EXPECT_TRUE(isRefused({"\x14" + std::string(16, '\xFF')}));
    const auto real = [](const std::string& object) { return in<__CFNumber>(parseObjects({object})).real; };
    EXPECT_EQ(real("\x22\x3F" + bigEndian(0xC00000, 3)), 1.5);
    EXPECT_EQ(real("\x23\x3F" + bigEndian(0xF8000000000000, 7)), 1.5);
    EXPECT_TRUE(in<__CFBoolean>(parseObjects({"\x09"})).value);
    EXPECT_FALSE(in<__CFBoolean>(parseObjects({"\x08"})).value);
}

TEST_F(BinaryPropertyList, DatesAndData_AreRead) {
    EXPECT_EQ(in<__CFDate>(parseObjects({"\x33\x3F" + bigEndian(0xF0000000000000, 7)})).time, 1.0);
    EXPECT_TRUE(isRefused({"\x33\x7F" + bigEndian(0xF0000000000000, 7)})) << "infinite";
    EXPECT_EQ(in<__CFData>(parseObjects({countedObject(0x4, 3, "\x01\x02\x03")})).bytes, "\x01\x02\x03");
}

TEST_F(BinaryPropertyList, Collections_ShareTheObjectsTheyReferTo) {
    const ObjectHolder list =
        parseObjects({dictionaryObject({1}, {2}), asciiObject("a"), arrayObject({3, 3}), asciiObject("b")});
    const ObjectHolder key = portability::newString("a");
    const Object* const value = in<__CFDictionary>(list).value(key.get());
    const auto& array = dynamic_cast<const __CFArray&>(*value);
    ASSERT_EQ(array.values.size(), 2U);
    EXPECT_EQ(portability::toUtf8(array.values[0].get()), "b");
    EXPECT_EQ(array.values[0].get(), array.values[1].get());
}

TEST_F(BinaryPropertyList, ManyReferencesToOneObject_CostNoMoreThanTheFile) {
    std::vector<std::string> objects;
    for (uint64_t level = 1; level <= 100; ++level)
        objects.push_back(arrayObject({level, level}));
    objects.push_back(asciiObject("a"));
    EXPECT_TRUE(parseObjects(objects));
}

TEST_F(BinaryPropertyList, KeysThatAreNotStrings_AreRefused) {
    EXPECT_TRUE(isRefused({dictionaryObject({1}, {1}), "\x10\x05"}));
}

TEST_F(BinaryPropertyList, ObjectsThatAreNotPartOfAPropertyList_AreRefused) {
    for (const char* object : {"\x0F", "\x0A", "\x80\x05", "\xC0", "\x70\x05", "\xE0", "\xF0"})
        EXPECT_TRUE(isRefused({object})) << object;
    EXPECT_TRUE(isRefused({std::string(1, '\0')}));
}

TEST_F(BinaryPropertyList, Levels_UpTo128_AreRead) {
    EXPECT_TRUE(parseObjects(nestedArrays(128)));
    EXPECT_TRUE(isRefused(nestedArrays(129)));
    EXPECT_TRUE(isRefused(nestedArrays(200000)));
}

TEST_F(BinaryPropertyList, LevelsInObjectsReadEarlier_Count) {
    std::vector<std::string> objects = nestedArrays(300);
    // Each of these arrays is within 128 levels of the one that was read before it.
    objects[0] = arrayObject({250, 150, 50, 1});
    EXPECT_TRUE(isRefused(objects));
    std::vector<std::string> shallow = nestedArrays(100);
    shallow[0] = arrayObject({90, 50, 1});
    EXPECT_TRUE(parseObjects(shallow));
}

TEST_F(BinaryPropertyList, CirclesOfReferences_AreRefused) {
    EXPECT_TRUE(isRefused({arrayObject({0})}));
    EXPECT_TRUE(isRefused({dictionaryObject({1}, {0}), asciiObject("a")}));
    EXPECT_TRUE(isRefused({arrayObject({1}), arrayObject({2, 0})}));
}

TEST_F(BinaryPropertyList, ReferencesAndCountsBeyondTheList_AreRefused) {
    EXPECT_TRUE(isRefused({arrayObject({7})}));
    EXPECT_TRUE(isRefused({countedObject(0xA, 3, references({1})), asciiObject("a")}));
    for (const unsigned kind : {0x4U, 0x5U, 0x6U, 0xAU, 0xDU}) {
        EXPECT_TRUE(isRefused({countedObject(kind, 14, "abc")})) << kind;
        for (const uint64_t count : {uint64_t(1) << 31, uint64_t(1) << 61, uint64_t(1) << 63, ~uint64_t(0)})
            EXPECT_TRUE(isRefused({countedObject(kind, count, "abc")})) << kind << " " << count;
    }
    EXPECT_TRUE(isRefused({"\x5F"})) << "no count";
    EXPECT_TRUE(isRefused({"\x5F\x23\x10"})) << "a count that is no integer";
    EXPECT_TRUE(isRefused({"\x5F\x14" + bigEndian(1, 16) + "a"})) << "a count of 16 bytes";
}

TEST_F(BinaryPropertyList, AsciiTextOutsideAscii_IsRefused) {
    EXPECT_TRUE(isRefused({"\x51\xFF"}));
}

TEST_F(BinaryPropertyList, TrailersThatCannotBe_AreRefused) {
    EXPECT_FALSE(isRefusedWith([](BinaryTrailer&) {}));
    for (const unsigned width : {0U, 9U, 255U}) {
        EXPECT_TRUE(isRefusedWith([&](BinaryTrailer& trailer) { trailer.offsetWidth = width; }));
        EXPECT_TRUE(isRefusedWith([&](BinaryTrailer& trailer) { trailer.referenceWidth = width; }));
    }
    for (const uint64_t number : {uint64_t(3), uint64_t(1) << 62, ~uint64_t(0)}) {
        EXPECT_TRUE(isRefusedWith([&](BinaryTrailer& trailer) { trailer.top = number; }));
        EXPECT_TRUE(isRefusedWith([&](BinaryTrailer& trailer) { trailer.count = number; }));
        EXPECT_TRUE(isRefusedWith([&](BinaryTrailer& trailer) { trailer.table = number; }));
    }
    EXPECT_TRUE(isRefusedWith([](BinaryTrailer& trailer) { trailer.count = 0; }));
}

TEST_F(BinaryPropertyList, ListCutAnywhere_IsRefused) {
    const std::string whole =
        binaryList({dictionaryObject({1, 2}, {3, 4}), asciiObject("a"), asciiObject("b"),
                    utf16Object(std::string("\0c\0d", 4)), arrayObject({1, 2})});
    ASSERT_TRUE(readValue(whole));
    for (size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(readValue(whole.substr(0, length))) << length;
}

// Any result is allowed. The sanitizers find reads outside the list.
TEST_F(BinaryPropertyList, ListWithAnyByteChanged_EndsWithAValueOrNone) {
    const std::string whole =
        binaryList({dictionaryObject({1, 2}, {3, 4}), asciiObject("a"), asciiObject("b"),
                    utf16Object(std::string("\0c\0d", 4)), arrayObject({5, 6, 7}), "\x10\x05",
                    "\x23\x3F" + bigEndian(0, 7), countedObject(0x4, 20, std::string(20, 'd'))});
    for (size_t at = 0; at < whole.size(); ++at) {
        for (const int mask : {0x01, 0x0F, 0x10, 0x80, 0xFF}) {
            std::string changed = whole;
            changed[at] = static_cast<char>(changed[at] ^ mask);
            const ObjectHolder value = readValue(changed);
            EXPECT_TRUE(!value || value.get()->kind() != 0);
        }
    }
}
