#include "tools/properties/PropertiesEditor.h"

#include <gtest/gtest.h>

#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

constexpr char kText[] = "# comment\n//a\nINT:1\n\n//b\nBAR:00\n01\n\n  //c\n# why\n\tSTR:x\n//a\nINT:9\n";

std::string set(const std::string& text, const std::string& key, const PropertyValue& value,
                const std::string& section = "") {
    PropertiesEditor editor(text, section.empty() ? SectionChoice() : SectionChoice::parse(section));
    editor.set(key, value);
    return editor.text();
}

std::string remove(const std::string& text, const std::string& key) {
    PropertiesEditor editor(text, {});
    EXPECT_TRUE(editor.remove(key));
    return editor.text();
}

TEST(PropertiesEditor, ChangedValue_LeavesAllOtherLines) {
    EXPECT_EQ(set(kText, "a", PropertyValue::ofString("new")),
              "# comment\n//a\nSTR:new\n\n//b\nBAR:00\n01\n\n  //c\n# why\n\tSTR:x\n//a\nINT:9\n");
    EXPECT_EQ(set(kText, "b", PropertyValue::ofInt(2)),
              "# comment\n//a\nINT:1\n\n//b\nINT:2\n\n  //c\n# why\n\tSTR:x\n//a\nINT:9\n");
    EXPECT_EQ(set(kText, "c", PropertyValue::ofBinary("\xFF", 1)),
              "# comment\n//a\nINT:1\n\n//b\nBAR:00\n01\n\n  //c\n# why\nBAR:FF\n//a\nINT:9\n");
}

TEST(PropertiesEditor, NewEntry_FollowsTheLastEntry) {
    EXPECT_EQ(set("", "a", PropertyValue::ofInt(1)), "//a\nINT:1\n");
    EXPECT_EQ(set("//a\nINT:1", "b", PropertyValue::ofInt(2)), "//a\nINT:1\n//b\nINT:2\n");
    EXPECT_EQ(set("//a\nINT:1\n\n# end\n", "b", PropertyValue::ofInt(2)),
              "//a\nINT:1\n//b\nINT:2\n\n# end\n");
    EXPECT_EQ(set("# only this", "b", PropertyValue::ofInt(2)), "# only this\n//b\nINT:2\n");
}

TEST(PropertiesEditor, Section_IsTheOnlyOneThatChanges) {
    constexpr char kSections[] = "//L\nSTR:x\n//a\nINT:1\n\n//L\nSTR:y\n//a\nINT:2\n";
    EXPECT_EQ(set(kSections, "a", PropertyValue::ofInt(5), "L=y"),
              "//L\nSTR:x\n//a\nINT:1\n\n//L\nSTR:y\n//a\nINT:5\n");
    EXPECT_EQ(set(kSections, "b", PropertyValue::ofInt(5), "L=x"),
              "//L\nSTR:x\n//a\nINT:1\n//b\nINT:5\n\n//L\nSTR:y\n//a\nINT:2\n");
    EXPECT_THROW(set(kSections, "a", PropertyValue::ofInt(5), "L=z"), ToolFailure);
}

TEST(PropertiesEditor, SectionKey_CannotBeRemoved) {
    constexpr char kSections[] = "//L\nSTR:x\n//a\nINT:1\n";
    PropertiesEditor editor(kSections, SectionChoice::parse("L=x"));
    EXPECT_THROW(editor.remove("L"), ToolFailure);
    EXPECT_EQ(editor.text(), kSections);
}

TEST(PropertiesEditor, RemovedKey_IsGoneWithItsRepetitions) {
    EXPECT_EQ(remove(kText, "a"), "# comment\n\n//b\nBAR:00\n01\n\n  //c\n# why\n\tSTR:x\n");
    EXPECT_EQ(remove(kText, "c"), "# comment\n//a\nINT:1\n\n//b\nBAR:00\n01\n\n# why\n//a\nINT:9\n");
    PropertiesEditor editor(kText, {});
    EXPECT_FALSE(editor.remove("z"));
    EXPECT_EQ(editor.text(), kText);
}

TEST(PropertiesEditor, ValueThatCannotBeStored_ChangesNothing) {
    PropertiesEditor editor(kText, {});
    EXPECT_THROW(editor.set("a", PropertyValue::ofString("x\n//z")), ToolFailure);
    EXPECT_EQ(editor.text(), kText);
}

}  // namespace
}  // namespace dovrel::tools
