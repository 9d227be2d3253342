#include "server/Behaviour.h"

#include <gtest/gtest.h>

#include "server/DescribedClass.h"
#include "server/SettingsText.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

using Names = std::vector<std::string>;

class BehaviourTest : public testing::Test {
  protected:
    /// Describes a class with the method "do" and these entries after its methods, and makes an object of it.
    void describe(const std::string& entries) {
        Names problems;
        const std::string text = "//CLASS\nSTR:Thing\n//methods\nSTR:do, other\n" + entries;
        class_ = DescribedClass::fromSection(readSettingsText(text, problems).at(0), process_, problems);
        EXPECT_EQ(problems, Names());
        object_ = instantiate();
    }

    std::unique_ptr<ServerObject> instantiate() {
        UserMessage message;
        return class_->instantiate({1, "Demo", 4711}, message);
    }

    static std::string call(ServerObject& object, const std::string& method, const std::string& argument) {
        try {
            return bytesToText(object.call(method, toBytes(argument), {1, "Demo", 4711}).data);
        } catch (const Refusal& refusal) {
            return "error " + std::to_string(refusal.code) + ": " + refusal.text;
        }
    }
    std::string call(const std::string& argument = "") { return call(*object_, "do", argument); }
    std::string callOther(const std::string& argument = "") { return call(*object_, "other", argument); }

    FakeProcess process_;
    std::shared_ptr<const ServerClass> class_;
    std::unique_ptr<ServerObject> object_;
};

TEST_F(BehaviourTest, Cases_AreTriedInTheOrderOfTheirNamesInTheList) {
    describe(
        "//do.cases\nSTR:b, a\n//do.a.prefix\nSTR:x\n//do.a.answer\nSTR:a\n"
        "//do.b.prefix\nSTR:xy\n//do.b.answer\nSTR:b\n//do.answer\nSTR:none\n");
    EXPECT_EQ(call("xyz"), "b");
    EXPECT_EQ(call("xz"), "a");
    EXPECT_EQ(call("z"), "none");
    EXPECT_EQ(call(""), "none");
}

TEST_F(BehaviourTest, Argument_IsExactAndOfAnyType) {
    describe(
        "//do.cases\nSTR:text, number, bytes, "
        "empty\n//do.text.argument\nSTR:abc\n//do.text.answer\nSTR:text\n"
        "//do.number.argument\nINT:258\n//do.number.answer\nSTR:number\n"
        "//do.bytes.argument\nBAR:00FF\n//do.bytes.answer\nSTR:bytes\n"
        "//do.empty.argument\nSTR:\n//do.empty.answer\nSTR:empty\n");
    EXPECT_EQ(call("abc"), "text");
    EXPECT_EQ(call("abcd"), "");
    EXPECT_EQ(call(littleEndian(258)), "number");
    EXPECT_EQ(call(std::string("\0\xFF", 2)), "bytes");
    EXPECT_EQ(call(""), "empty");
}

TEST_F(BehaviourTest, SeveralConditions_MustAllHold) {
    describe("//do.cases\nSTR:a\n//do.a.prefix\nSTR:x\n//do.a.pattern\nSTR:*z\n//do.a.answer\nSTR:both\n");
    EXPECT_EQ(call("xyz"), "both");
    EXPECT_EQ(call("xy"), "");
    EXPECT_EQ(call("yz"), "");
}

TEST_F(BehaviourTest, Sequence_StaysRestartsOrFailsAtItsEnd) {
    const std::string steps = "//do.sequence\nSTR:a, b\n//do.a.answer\nSTR:1\n//do.b.answer\nSTR:2\n";
    const std::pair<const char*, const char*> ends[] = {
        {"", "2"},
        {"//do.atEnd\nSTR:stay\n", "2"},
        {"//do.atEnd\nSTR:restart\n", "1"},
        {"//do.atEnd\nSTR:fail\n", "error 28: the sequence of do has ended"}};
    for (const auto& [atEnd, third] : ends) {
        describe(steps + atEnd);
        EXPECT_EQ(call(), "1");
        EXPECT_EQ(call(), "2");
        EXPECT_EQ(call(), third);
        EXPECT_EQ(call(*instantiate(), "do", ""), "1") << "another object begins with the first step";
    }
}

TEST_F(BehaviourTest, Steps_HaveTheirOwnErrorsAndDelaysAndCases) {
    describe(
        "//do.sequence\nSTR:slow, bad, choosing\n//do.slow.delay\nINT:7\n//do.slow.answer\nSTR:late\n"
        "//do.bad.errorCode\nINT:30\n//do.bad.errorText\nSTR:No.\n"
        "//do.choosing.cases\nSTR:x\n//do.choosing.x.argument\nSTR:x\n//do.choosing.x.answer\nSTR:chosen\n"
        "//do.choosing.answer\nSTR:not chosen\n");
    EXPECT_EQ(call(), "late");
    EXPECT_EQ(process_.calls, Names{"pause 7"});
    EXPECT_EQ(call(), "error 30: No.");
    EXPECT_EQ(call("x"), "chosen");
    EXPECT_EQ(call("y"), "not chosen");
}

TEST_F(BehaviourTest, SequenceOfACase_AdvancesOnlyWithThatCase) {
    describe(
        "//do.cases\nSTR:x\n//do.x.argument\nSTR:x\n//do.x.sequence\nSTR:a, b\n//do.x.a.answer\nSTR:1\n"
        "//do.x.b.answer\nSTR:2\n//do.answer\nSTR:other\n");
    EXPECT_EQ(call("x"), "1");
    EXPECT_EQ(call("y"), "other");
    EXPECT_EQ(call("x"), "2");
}

TEST_F(BehaviourTest, Counter_IsTheResultInFourBytes) {
    describe("//do.counter\nSTR:sum\n//do.add\nSTR:argument\n//other.counter\nSTR:sum\n");
    EXPECT_EQ(call(littleEndian(5)), littleEndian(5));
    EXPECT_EQ(call(littleEndian(0xFFFFFFF0)), littleEndian(0xFFFFFFF5));
    EXPECT_EQ(call(littleEndian(11)), "error 28: the counter \"sum\" does not fit in 32 bits");
    EXPECT_EQ(callOther(), littleEndian(0xFFFFFFF5));
    EXPECT_EQ(call("abc"), "error 30: the argument has 3 bytes, not 4");
}

TEST_F(BehaviourTest, AddAndSet_TakeNumbersToo) {
    describe("//do.counter\nSTR:sum\n//do.add\nINT:-2\n//other.counter\nSTR:sum\n//other.set\nINT:3\n");
    EXPECT_EQ(call(), "error 28: the counter \"sum\" does not fit in 32 bits");
    EXPECT_EQ(callOther(), littleEndian(3));
    EXPECT_EQ(call(), littleEndian(1));
}

TEST_F(BehaviourTest, AtLeast_ComparesTheCounterOfTheCase) {
    describe(
        "//do.cases\nSTR:full\n//do.full.counter\nSTR:n\n//do.full.atLeast\nINT:2\n//"
        "do.full.errorText\nSTR:Full.\n"
        "//do.counter\nSTR:n\n//do.add\nINT:1\n");
    EXPECT_EQ(call(), littleEndian(1));
    EXPECT_EQ(call(), littleEndian(2));
    EXPECT_EQ(call(), "error 28: Full.");
}

TEST_F(BehaviourTest, Template_ReplacesItsWordsOnceAndKeepsEverythingElse) {
    describe(
        "//do.counter\nSTR:n\n//do.add\nINT:1\n"
        "//do.template\nSTR:{application}: {argument} {counter} {other} {chg-lf{argument}\n");
    EXPECT_EQ(call("{counter}"), "Demo: {counter} 1 {other} {\n{counter}");
}

TEST_F(BehaviourTest, Store_KeepsEntriesUnderTheNameInTheArgument) {
    describe("//do.put\nSTR:s\n//other.get\nSTR:s\n");
    EXPECT_EQ(call(std::string("name\0value", 10)), "");
    EXPECT_EQ(callOther("name"), "value");
    EXPECT_EQ(callOther("another"), "error 28: the store \"s\" has no such entry");
    EXPECT_EQ(call("name"), "error 30: there is no zero byte after the name");
    EXPECT_EQ(call(*instantiate(), "other", "name"), "error 28: the store \"s\" has no such entry");
}

TEST_F(BehaviourTest, StoreWithAFixedKey_KeepsTheWholeArgument) {
    describe("//do.put\nSTR:s\n//do.key\nSTR:last\n//other.get\nSTR:s\n//other.key\nSTR:last\n");
    EXPECT_EQ(call(std::string("a\0b", 3)), "");
    EXPECT_EQ(callOther("anything"), std::string("a\0b", 3));
}

TEST_F(BehaviourTest, RemoveAndList_ChangeAndShowTheStore) {
    describe(
        "//do.cases\nSTR:put, remove\n//do.put.pattern\nBAR:2A002A\n//do.put.put\nSTR:s\n"
        "//do.remove.prefix\nSTR:\n//do.remove.remove\nSTR:s\n//other.list\nSTR:s\n");
    call(std::string("b\0x", 3));
    call(std::string("a\0y", 3));
    EXPECT_EQ(callOther(), "a\nb\n");
    EXPECT_EQ(call("b"), "");
    EXPECT_EQ(callOther(), "a\n");
    EXPECT_EQ(call("b"), "error 28: the store \"s\" has no such entry");
}

TEST_F(BehaviourTest, StateOfTheClass_IsSharedByItsObjects) {
    describe("//state\nSTR:class\n//do.counter\nSTR:n\n//do.add\nINT:1\n");
    EXPECT_EQ(call(), littleEndian(1));
    EXPECT_EQ(call(*instantiate(), "do", ""), littleEndian(2));
}

TEST_F(BehaviourTest, CreationOfObjects_CanCountAndFail) {
    describe(
        "//state\nSTR:class\n//instantiate.cases\nSTR:full\n//instantiate.full.counter\nSTR:n\n"
        "//instantiate.full.atLeast\nINT:1\n//instantiate.full.errorCode\nINT:26\n"
        "//instantiate.counter\nSTR:n\n//instantiate.add\nINT:1\n");
    EXPECT_THROW(instantiate(), Refusal);
}

TEST(FitsPattern, StarAndQuestionMark_StandForBytes) {
    EXPECT_TRUE(fitsPattern("", ""));
    EXPECT_TRUE(fitsPattern("", "*"));
    EXPECT_TRUE(fitsPattern("abc", "abc"));
    EXPECT_TRUE(fitsPattern("abc", "a?c"));
    EXPECT_TRUE(fitsPattern("abc", "*"));
    EXPECT_TRUE(fitsPattern("abcbc", "a*bc"));
    EXPECT_TRUE(fitsPattern("abc", "**c*"));
    EXPECT_TRUE(fitsPattern(std::string_view("a\0c", 3), std::string_view("a?c")));
    EXPECT_FALSE(fitsPattern("", "?"));
    EXPECT_FALSE(fitsPattern("abc", "ab"));
    EXPECT_FALSE(fitsPattern("abc", "bc"));
    EXPECT_FALSE(fitsPattern("abc", "a*b"));
    EXPECT_FALSE(fitsPattern("ac", "a?c"));
}

}  // namespace
}  // namespace merrowd::test
