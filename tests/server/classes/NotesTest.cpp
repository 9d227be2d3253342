#include <gtest/gtest.h>

#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

std::string note(const std::string& name, const std::string& content) {
    return name + '\0' + content;
}

TEST(Notes, Get_ReturnsWhatWasPut) {
    TestObject notes("Notes");
    EXPECT_EQ(notes.call("put", note("milk", std::string("two\0litres\n", 11))), "");
    EXPECT_EQ(notes.call("get", "milk"), std::string("two\0litres\n", 11));
}

TEST(Notes, Put_UnderANameThatIsThere_ReplacesTheNote) {
    TestObject notes("Notes");
    notes.call("put", note("milk", "two"));
    notes.call("put", note("milk", ""));
    EXPECT_EQ(notes.call("get", "milk"), "");
    EXPECT_EQ(notes.call("list"), "milk\n");
}

TEST(Notes, List_ReturnsTheNamesInAlphabeticalOrder) {
    TestObject notes("Notes");
    EXPECT_EQ(notes.call("list"), "");
    notes.call("put", note("milk", ""));
    notes.call("put", note("bread", ""));
    EXPECT_EQ(notes.call("list"), "bread\nmilk\n");
}

TEST(Notes, Remove_TakesOneNoteAway) {
    TestObject notes("Notes");
    notes.call("put", note("milk", ""));
    notes.call("put", note("bread", ""));
    EXPECT_EQ(notes.call("remove", "milk"), "");
    EXPECT_EQ(notes.call("list"), "bread\n");
}

TEST(Notes, GetAndRemove_OfANameThatIsNotThere_AreFailuresOfTheMethod) {
    TestObject notes("Notes");
    EXPECT_EQ(notes.callRefused("get", "milk"), 28u);
    EXPECT_EQ(notes.callRefused("remove", "milk"), 28u);
}

TEST(Notes, InvalidNames_AreParameterFormat) {
    TestObject notes("Notes");
    EXPECT_EQ(notes.callRefused("put", "no zero byte"), 30u);
    EXPECT_EQ(notes.callRefused("put", note("", "content")), 30u);
    EXPECT_EQ(notes.callRefused("put", note("two\nlines", "content")), 30u);
    EXPECT_EQ(notes.callRefused("get", ""), 30u);
    EXPECT_EQ(notes.callRefused("get", note("milk", "")), 30u);
    EXPECT_EQ(notes.callRefused("list", "x"), 30u);
}

TEST(Notes, TwoObjects_KeepNotesOfTheirOwn) {
    TestObject mine("Notes");
    TestObject yours("Notes");
    mine.call("put", note("milk", ""));
    EXPECT_EQ(yours.call("list"), "");
}

}  // namespace
}  // namespace merrowd::test
