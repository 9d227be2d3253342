#include "serialization/Identifiers.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "tests/support/VirtualTable.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::makeArray;
using test::toText;

TEST(Identifiers, Family_ClassesAndObjectsAreKeysExecutersAreNot) {
    EXPECT_TRUE((std::is_base_of_v<CPPByteArray, CPPKey>));
    EXPECT_TRUE((std::is_base_of_v<CPPKey, CPPClassID>));
    EXPECT_TRUE((std::is_base_of_v<CPPKey, CPPObjectID>));
    EXPECT_TRUE((std::is_base_of_v<CPPByteArray, ProtectedExecuterID>));
    EXPECT_FALSE((std::is_base_of_v<CPPKey, ProtectedExecuterID>));
    EXPECT_FALSE((std::is_convertible_v<CPPClassID, CPPObjectID>));
}

template <class Identifier>
void expectByteArrayBehaviour() {
    const Identifier original(makeArray("0123456789abcdef"));
    Identifier copy(original);
    EXPECT_EQ(copy.compare(original), 0);
    EXPECT_TRUE(CPPByteArray::less(Identifier(makeArray("0")), original));
    copy = Identifier();
    EXPECT_EQ(toText(copy), "0123456789abcdef") << "assigning an empty identifier changes nothing";
    copy = Identifier(makeArray("x"));
    EXPECT_EQ(toText(copy), "x");
    EXPECT_EQ(Identifier().getSize(), 0u);
    EXPECT_EQ(sizeof(Identifier), sizeof(CPPByteArray));
    EXPECT_EQ(test::VirtualSlots<Identifier>::count(), 5u);
    const std::unique_ptr<CPPByteArray> base = std::make_unique<Identifier>(original);
    EXPECT_EQ(base->getSize(), 16u);
}

TEST(Identifiers, CompareAndCopy_AreThoseOfTheByteArray) {
    expectByteArrayBehaviour<CPPKey>();
    expectByteArrayBehaviour<CPPClassID>();
    expectByteArrayBehaviour<CPPObjectID>();
    expectByteArrayBehaviour<ProtectedExecuterID>();
}

}  // namespace
}  // namespace dovrel
