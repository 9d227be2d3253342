#include "macho/objc/LegacyClasses.h"

#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <array>
#include <vector>

#include "tests/macho/format/FileBuilder.h"

namespace dovrel::macho {
namespace {

// A class and an instance variable in the layout that they have in an image. The words have the width of this
// process, so the tests run in both widths.
using Description = std::array<const void*, 12>;

struct Variable {
    int count;
    struct {
        const char* name;
        const char* type;
        int offset;
    } entry;
};

constexpr int kBehindNSObject = sizeof(void*);

Description describe(const char* name, const char* superclass, const Variable* variable = nullptr) {
    static constexpr Description kWithoutMethods = {};
    Description description = {&kWithoutMethods, superclass, name};
    description[6] = variable;
    return description;
}

// Calls `use` with an image whose only section is this one. Returns the reason of the failure, or nothing.
template <typename Words, typename Use>
std::string catchReason(const std::string& section, Words& words, const Use& use) {
    FileBuilder builder;
    const size_t size = words.size() * sizeof words[0];
    builder.sectionName = section;
    builder.sectionSize = size;
    const MachOFile file = builder.file();
    MappedImage image(file);
    uint8_t* const content = image.at(builder.sectionAddress, size);
    std::memcpy(content, words.data(), size);
    std::string reason;
    try {
        use(file, image);
    } catch (const FormatError& error) {
        reason = error.what();
    }
    std::memcpy(words.data(), content, size);
    return reason;
}

std::string catchRegistrationReason(std::vector<Description> classes) {
    return catchReason("__class", classes, &registerLegacyClasses);
}

Class find(const char* name) {
    return reinterpret_cast<Class>(objc_getClass(name));
}

TEST(LegacyClasses, AClassBeforeItsSuperclass_IsRegisteredAfterIt) {
    EXPECT_EQ(catchRegistrationReason(
                  {describe("DovrelSon", "DovrelFather"), describe("DovrelFather", "NSObject")}),
              "");
    ASSERT_NE(find("DovrelSon"), nullptr);
    EXPECT_EQ(class_getSuperclass(find("DovrelSon")), find("DovrelFather"));
}

TEST(LegacyClasses, AClassWhoseSuperclassIsNowhere_IsRefused) {
    EXPECT_EQ(catchRegistrationReason({describe("DovrelOrphan", "DovrelNobody")}),
              "a class has no superclass");
    EXPECT_EQ(find("DovrelOrphan"), nullptr);
}

TEST(LegacyClasses, ClassesThatAreEachOthersSuperclass_AreRefused) {
    EXPECT_EQ(
        catchRegistrationReason({describe("DovrelHen", "DovrelEgg"), describe("DovrelEgg", "DovrelHen")}),
        "a class has no superclass");
}

TEST(LegacyClasses, AClassThatTheProcessHas_IsRefused) {
    EXPECT_EQ(catchRegistrationReason({describe("NSString", "NSObject")}),
              "the process has a class NSString already");
}

TEST(LegacyClasses, AVariableWhereTheCompilerPutIt_IsTaken) {
    const Variable variable = {1, {"number_", "i", kBehindNSObject}};
    EXPECT_EQ(catchRegistrationReason({describe("DovrelNumber", "NSObject", &variable)}), "");
    EXPECT_GE(class_getInstanceSize(find("DovrelNumber")), kBehindNSObject + sizeof(int));
}

TEST(LegacyClasses, AVariableThatHasAnotherPlaceHere_IsRefused) {
    const Variable variable = {1, {"number_", "i", kBehindNSObject + 4}};
    EXPECT_EQ(catchRegistrationReason({describe("DovrelMoved", "NSObject", &variable)}),
              "DovrelMoved has variables in other places here");
}

TEST(LegacyClasses, TheNameOfAClass_BecomesTheClass) {
    std::array<const void*, 8 / sizeof(void*)> reference = {"NSObject"};
    EXPECT_EQ(catchReason("__cls_refs", reference, &referToLegacyClasses), "");
    EXPECT_EQ(reference[0], find("NSObject"));
}

TEST(LegacyClasses, TheNameOfAClassThatIsNowhere_IsRefused) {
    std::array<const void*, 8 / sizeof(void*)> reference = {"DovrelNobody"};
    EXPECT_EQ(catchReason("__cls_refs", reference, &referToLegacyClasses), "there is no class DovrelNobody");
}

}  // namespace
}  // namespace dovrel::macho
