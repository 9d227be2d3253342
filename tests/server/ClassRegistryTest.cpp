#include "server/ClassRegistry.h"

#include <gtest/gtest.h>

#include "server/DescribedClass.h"
#include "tests/server/FakeProcess.h"

namespace merrowd::test {
namespace {

std::shared_ptr<const ServerClass> described(const std::string& name, const std::string& method) {
    static FakeProcess process;
    SettingsSection section;
    section.entries.addString("CLASS", name);
    section.entries.addString("methods", method);
    std::vector<std::string> problems;
    return DescribedClass::fromSection(section, process, problems);
}

std::vector<std::string> listMethods(const ClassRegistry& registry, const std::string& name) {
    return registry.find(ServerClass::identifierFromName(name))->methods();
}

using Names = std::vector<std::string>;

TEST(ClassRegistry, Names_OfANewRegistry_AreTheBuiltInClasses) {
    EXPECT_EQ(ClassRegistry().names(), (Names{"Clock", "Counter", "Digest", "Echo", "Notes"}));
}

TEST(ClassRegistry, BuiltInClasses_HaveTheMethodsThatTheirDocumentationLists) {
    const ClassRegistry registry;
    EXPECT_EQ(listMethods(registry, "Clock"), (Names{"now"}));
    EXPECT_EQ(listMethods(registry, "Counter"), (Names{"add", "value", "reset"}));
    EXPECT_EQ(listMethods(registry, "Digest"), (Names{"md5"}));
    EXPECT_EQ(listMethods(registry, "Echo"), (Names{"echo"}));
    EXPECT_EQ(listMethods(registry, "Notes"), (Names{"put", "get", "list", "remove"}));
}

TEST(ClassRegistry, Find_OfAnUnknownIdentifier_IsNull) {
    EXPECT_EQ(ClassRegistry().find(ServerClass::identifierFromName("echo")), nullptr);
    EXPECT_EQ(ClassRegistry().find(Identifier{}), nullptr);
}

TEST(ClassRegistry, Add_MakesAClassKnown) {
    ClassRegistry registry;
    registry.add(described("Scanner", "scan"));
    EXPECT_EQ(listMethods(registry, "Scanner"), (Names{"scan"}));
    EXPECT_EQ(registry.names(), (Names{"Clock", "Counter", "Digest", "Echo", "Notes", "Scanner"}));
}

TEST(ClassRegistry, Add_OfTheSameIdentifier_ReplacesTheClass) {
    ClassRegistry registry;
    registry.add(described("Scanner", "scan"));
    registry.add(described("Scanner", "copy"));
    EXPECT_EQ(listMethods(registry, "Scanner"), (Names{"copy"}));
}

TEST(ClassRegistry, Add_OfABuiltInIdentifier_TakesItsPlace) {
    ClassRegistry registry;
    registry.add(described("Echo", "shout"));
    EXPECT_EQ(listMethods(registry, "Echo"), (Names{"shout"}));
    EXPECT_EQ(registry.names(), (Names{"Clock", "Counter", "Digest", "Echo", "Notes"}));
}

TEST(ServerClass, IdentifierOfName_PadsWithZeroBytesAndCutsAtSixteen) {
    EXPECT_EQ(ServerClass::identifierFromName("ab"), (Identifier{'a', 'b'}));
    EXPECT_EQ(ServerClass::identifierFromName("0123456789ABCDEFG"),
              (Identifier{'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'}));
}

}  // namespace
}  // namespace merrowd::test
