#include "server/BehaviourReader.h"

#include <gtest/gtest.h>

namespace merrowd::test {
namespace {

using Problems = std::vector<std::string>;

/// Returns the problems with the entries of the method "do".
Problems readProblems(const std::string& entries, bool hasResult = true) {
    Problems problems;
    const std::string className = "Thing";
    const std::vector<SettingsSection> sections =
        readSettingsText("//CLASS\nSTR:Thing\n" + entries, problems);
    BehaviourReader reader(sections.at(0), className, problems);
    reader.read("do", hasResult);
    reader.reportUnusedKeys({"CLASS"});
    return problems;
}

std::string problem(size_t line, const std::string& text) {
    return "line " + std::to_string(line) + ": class \"Thing\": " + text;
}

TEST(BehaviourReader, UnknownWordAndUnknownCase_DescribeNothing) {
    EXPECT_EQ(readProblems("//do.colour\nSTR:red\n//do.a.answer\nSTR:x\n//do.answer\nSTR:x\n"),
              (Problems{problem(5, "\"do.a.answer\" describes nothing"),
                        problem(3, "\"do.colour\" describes nothing")}));
}

TEST(BehaviourReader, ConditionsOutsideOfCases_DescribeNothing) {
    for (const std::string word : {"argument", "prefix", "pattern"}) {
        EXPECT_EQ(readProblems("//do." + word + "\nSTR:x\n"),
                  Problems{problem(3, "\"do." + word + "\" describes nothing")});
        EXPECT_EQ(readProblems("//do.sequence\nSTR:a\n//do.a." + word + "\nSTR:x\n"),
                  Problems{problem(5, "\"do.a." + word + "\" describes nothing")});
    }
}

TEST(BehaviourReader, ResultsOfACreation_DescribeNothing) {
    for (const std::string word : {"answer", "template", "get", "list"}) {
        EXPECT_EQ(readProblems("//do." + word + "\nSTR:x\n", false),
                  Problems{problem(3, "\"do." + word + "\" describes nothing")});
    }
}

TEST(BehaviourReader, NamesThatCannotBeUsed_AreProblems) {
    EXPECT_EQ(readProblems("//do.cases\nSTR:a,,b.c\n"),
              (Problems{problem(3, "\"\" cannot be a name in \"do.cases\""),
                        problem(3, "\"b.c\" cannot be a name in \"do.cases\"")}));
    EXPECT_EQ(readProblems("//do.cases\nSTR:a, b, a\n"),
              Problems{problem(3, "\"a\" is twice in \"do.cases\"")});
    EXPECT_EQ(readProblems("//do.sequence\nSTR:a, a\n"), Problems());
}

/// Returns entries with cases or a sequence that are nested to a depth. Each list has several names.
std::string nest(const std::string& word, const std::string& names, int depth) {
    std::string entries;
    std::string path = "do";
    for (int i = 0; i < depth; ++i) {
        entries += "//" + path + "." + word + "\nSTR:" + names + "\n";
        path += ".a";
    }
    return entries;
}

TEST(BehaviourReader, NestingIsLimitedTo8Levels) {
    for (const std::string word : {"cases", "sequence"}) {
        EXPECT_EQ(readProblems(nest(word, "a", 8)), Problems());
        EXPECT_EQ(readProblems(nest(word, "a", 10)),
                  (Problems{problem(19, "\"do.a.a.a.a.a.a.a.a\" cannot have " + word +
                                            ": they are nested more than 8 levels deep"),
                            problem(21, "\"do.a.a.a.a.a.a.a.a.a." + word + "\" describes nothing")}));
    }
}

// If each repetition were read anew, this would be 6 to the power of 8 behaviours.
TEST(BehaviourReader, RepeatedSteps_AreReadOnce) {
    EXPECT_EQ(readProblems(nest("sequence", "a, a, a, a, a, a", 8) + "//do.a.delay\nSTR:x\n").size(), 1u);
}

TEST(BehaviourReader, ValuesThatDoNotFit_AreProblemsAtTheirLines) {
    EXPECT_EQ(readProblems("//do.delay\nSTR:long\n//do.counter\nSTR:n\n//do.add\nSTR:much\n"
                           "//do.set\nINT:-1\n//do.atEnd\nSTR:begin\n"),
              (Problems{problem(11,
                                "the value \"begin\" of \"do.atEnd\" does not fit; expected one of stay, "
                                "restart, fail"),
                        problem(3,
                                "the value \"long\" of \"do.delay\" does not fit; expected a number from 0 "
                                "to 2147483647"),
                        problem(7,
                                "the value \"much\" of \"do.add\" does not fit; expected a number from "
                                "-2147483647 to 2147483647"),
                        problem(9,
                                "the value \"-1\" of \"do.set\" does not fit; expected a number from 0 to "
                                "2147483647")}));
}

TEST(BehaviourReader, CounterWithoutAName_IsAProblem) {
    EXPECT_EQ(readProblems("//do.add\nINT:1\n"), Problems{problem(3, "\"do\" names no counter")});
    EXPECT_EQ(readProblems("//do.cases\nSTR:a\n//do.a.atLeast\nINT:1\n"),
              Problems{problem(5, "\"do.a\" names no counter")});
}

TEST(BehaviourReader, ResultBesideASequence_IsAProblem) {
    EXPECT_EQ(readProblems("//do.answer\nSTR:x\n//do.sequence\nSTR:a\n"),
              Problems{problem(5, "\"do\" has a sequence, so its own result is never used")});
}

}  // namespace
}  // namespace merrowd::test
