#include "server/DescribedClass.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/server/FakeProcess.h"

namespace merrowd::test {
namespace {

using Names = std::vector<std::string>;

class DescribedClassTest : public testing::Test {
  protected:
    // Returns the class that a text with one class describes.
    std::shared_ptr<const ServerClass> describe(const std::string& text) {
        problems_.clear();
        const std::vector<SettingsSection> sections = readSettingsText(text, problems_);
        EXPECT_EQ(sections.size(), 1u);
        return DescribedClass::fromSection(sections.at(0), process_, problems_);
    }

    static MethodResult call(const ServerClass& described, const std::string& method) {
        UserMessage message;
        return described.instantiate(Caller(), message)->call(method, {}, Caller());
    }

    FakeProcess process_;
    Names problems_;
};

TEST_F(DescribedClassTest, AClassOfItsNameAlone_HasNoMethods) {
    const auto scanner = describe("//CLASS\nSTR:Scanner\n");
    ASSERT_NE(scanner, nullptr);
    EXPECT_EQ(scanner->name(), "Scanner");
    EXPECT_EQ(scanner->identifier(), ServerClass::identifierFromName("Scanner"));
    EXPECT_EQ(scanner->methods(), Names());
    EXPECT_EQ(problems_, Names());
}

TEST_F(DescribedClassTest, Methods_StandBetweenCommas) {
    EXPECT_EQ(describe("//CLASS\nSTR:Scanner\n//methods\nSTR:scan, eject ,stop\n")->methods(),
              (Names{"scan", "eject", "stop"}));
}

TEST_F(DescribedClassTest, AnIdentifier_TakesThePlaceOfTheName) {
    const auto scanner = describe(
        "//CLASS\nSTR:A scanner with a long name\n//identifier\n"
        "BAR:000102030405060708090A0B0C0D0E0F\n");
    ASSERT_NE(scanner, nullptr);
    EXPECT_EQ(scanner->identifier(), (Identifier{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    EXPECT_EQ(problems_, Names());
}

TEST_F(DescribedClassTest, AnswersOfAnyType_AreTheirBytes) {
    const auto scanner = describe(
        "//CLASS\nSTR:Scanner\n//methods\nSTR:text,bytes,number,nothing\n"
        "//text.answer\nSTR:page 1\n//bytes.answer\nBAR:00FF\n//number.answer\nINT:258\n");
    EXPECT_EQ(bytesToText(call(*scanner, "text").data), "page 1");
    EXPECT_EQ(bytesToText(call(*scanner, "bytes").data), std::string("\x00\xFF", 2));
    EXPECT_EQ(bytesToText(call(*scanner, "number").data), std::string("\x02\x01\x00\x00", 4));
    EXPECT_EQ(bytesToText(call(*scanner, "nothing").data), "");
}

TEST_F(DescribedClassTest, AMessage_HasTheFlags1OrThoseThatAreGiven) {
    const auto scanner = describe(
        "//CLASS\nSTR:Scanner\n//methods\nSTR:scan,eject\n//scan.message\nSTR:Lampchg-lfold.\n"
        "//eject.message\nSTR:Hidden.\n//eject.messageFlags\nINT:0\n");
    EXPECT_EQ(call(*scanner, "scan").message.flags, 1u);
    EXPECT_EQ(call(*scanner, "scan").message.text, "Lamp\nold.");
    EXPECT_EQ(call(*scanner, "eject").message.flags, 0u);
}

TEST_F(DescribedClassTest, AFailure_HasItsCodeAndText) {
    const auto scanner = describe(
        "//CLASS\nSTR:Scanner\n//methods\nSTR:scan,eject\n//scan.errorCode\nINT:145\n"
        "//scan.errorText\nSTR:Stuck.\n//eject.errorText\nSTR:Gone.\n");
    try {
        call(*scanner, "scan");
        ADD_FAILURE();
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.code, 145u);
        EXPECT_EQ(refusal.text, "Stuck.");
    }
    try {
        call(*scanner, "eject");
        ADD_FAILURE();
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.code, 28u);
        EXPECT_EQ(refusal.text, "Gone.");
    }
}

TEST_F(DescribedClassTest, ADelay_ComesBeforeAnythingElse) {
    const auto scanner = describe(
        "//CLASS\nSTR:Scanner\n//methods\nSTR:scan\n//scan.delay\nINT:250\n//scan.errorCode\nINT:28\n");
    EXPECT_THROW(call(*scanner, "scan"), Refusal);
    EXPECT_EQ(process_.calls, (Names{"pause 250"}));
}

TEST_F(DescribedClassTest, Instantiate_CanBringAMessageOrFail) {
    const auto talking = describe("//CLASS\nSTR:Scanner\n//instantiate.message\nSTR:Hello.\n");
    UserMessage message;
    EXPECT_NE(talking->instantiate(Caller(), message), nullptr);
    EXPECT_EQ(message.text, "Hello.");
    const auto failing = describe("//CLASS\nSTR:Scanner\n//instantiate.errorCode\nINT:26\n");
    EXPECT_THROW(failing->instantiate(Caller(), message), Refusal);
}

TEST_F(DescribedClassTest, SequenceOfInstantiate_PerformsTheNextStepForEachObject) {
    for (const std::string state : {"object", "class"}) {
        const auto scanner =
            describe("//CLASS\nSTR:Scanner\n//state\nSTR:" + state +
                     "\n//instantiate.sequence\nSTR:bad, warm, good\n//instantiate.bad.errorCode\nINT:26\n"
                     "//instantiate.warm.sequence\nSTR:a, b\n//instantiate.warm.a.message\nSTR:Warm.\n");
        EXPECT_EQ(problems_, Names());
        UserMessage message;
        EXPECT_THROW(scanner->instantiate(Caller(), message), Refusal) << state;
        EXPECT_NE(scanner->instantiate(Caller(), message), nullptr);
        EXPECT_EQ(message.text, "Warm.") << state;
        for (int i = 0; i < 2; ++i) {
            EXPECT_NE(scanner->instantiate(Caller(), message), nullptr);
            EXPECT_EQ(message.text, "") << state;
        }
    }
}

TEST_F(DescribedClassTest, SequencesOfMethods_BeginAnewForEachObject) {
    const auto scanner = describe(
        "//CLASS\nSTR:Scanner\n//methods\nSTR:scan\n//instantiate.sequence\nSTR:a, b\n"
        "//scan.sequence\nSTR:a, b\n//scan.a.answer\nSTR:1\n//scan.b.answer\nSTR:2\n");
    for (int i = 0; i < 2; ++i) {
        UserMessage message;
        const std::unique_ptr<ServerObject> object = scanner->instantiate(Caller(), message);
        EXPECT_EQ(bytesToText(object->call("scan", {}, Caller()).data), "1");
        EXPECT_EQ(bytesToText(object->call("scan", {}, Caller()).data), "2");
    }
}

TEST_F(DescribedClassTest, WithoutAUsableNameOrIdentifier_ThereIsNoClass) {
    EXPECT_EQ(describe("//CLASS\nSTR:\n"), nullptr);
    EXPECT_EQ(problems_, (Names{"line 1: a class has no name"}));
    EXPECT_EQ(describe("//CLASS\nSTR:A name of 17 char\n"), nullptr);
    EXPECT_EQ(problems_, (Names{"line 1: class \"A name of 17 char\": the name is longer than 16 bytes and "
                                "there is no identifier"}));
    EXPECT_EQ(describe("//CLASS\nSTR:Scanner\n//identifier\nBAR:0001\n"), nullptr);
    EXPECT_EQ(problems_, (Names{"line 3: class \"Scanner\": the identifier has 2 bytes, not 16"}));
}

TEST_F(DescribedClassTest, EntriesThatDescribeNothing_AreLeftOutAndNamed) {
    const auto scanner = describe(
        "//CLASS\nSTR:Scanner\n//methods\nSTR:scan,,scan,instantiate\n//eject.answer\nSTR:x\n"
        "//scan\nSTR:x\n//scan.colour\nSTR:x\n//scan.delay\nSTR:long\n"
        "//instantiate.answer\nSTR:x\n");
    ASSERT_NE(scanner, nullptr);
    EXPECT_EQ(scanner->methods(), (Names{"scan"}));
    EXPECT_EQ(std::set<std::string>(problems_.begin(), problems_.end()),
              (std::set<std::string>{
                  "line 3: class \"Scanner\": \"\" cannot be the name of a method",
                  "line 3: class \"Scanner\": \"scan\" cannot be the name of a method",
                  "line 3: class \"Scanner\": \"instantiate\" cannot be the name of a method",
                  "line 5: class \"Scanner\": \"eject.answer\" describes nothing",
                  "line 7: class \"Scanner\": \"scan\" describes nothing",
                  "line 9: class \"Scanner\": \"scan.colour\" describes nothing",
                  "line 11: class \"Scanner\": the value \"long\" of \"scan.delay\" does not fit; "
                  "expected a number from 0 to 2147483647",
                  "line 13: class \"Scanner\": \"instantiate.answer\" describes nothing"}));
}

}  // namespace
}  // namespace merrowd::test
