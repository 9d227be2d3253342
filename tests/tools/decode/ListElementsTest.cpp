#include "tools/decode/ListElements.h"

#include <gtest/gtest.h>

#include "tests/tools/decode/DecodedInput.h"

namespace dovrel::tools {
namespace {

constexpr char kListHeader[] = "41 73 41 6B 00 01 00 00 00 08 ";
constexpr char kTwoElements[] = "00 00 00 00 00 00 00 04 02 00 00 00 ";

std::string list(const std::string& parts) {
    return kListHeader + parts;
}

TEST(ListElements, CompleteList_NamesNumberAndElements) {
    EXPECT_EQ(
        DecodedInput(list(kTwoElements) + "00 00 00 05 00 00 00 02 61 62 00 00 00 07 00 00 00 00").text(),
        "byte array list, 40 bytes: 2 elements\n"
        "0000  header = structured block, type number 8\n"
        "000A  0 number of elements = 2\n"
        "0016  5 element 0 = 2 bytes: 61 62 \"ab\"\n"
        "0020  7 element 1 = 0 bytes\n");
}

TEST(ListElements, MissingElement_IsAProblemAtTheEnd) {
    const DecodedInput input(list(kTwoElements) + "00 00 00 05 00 00 00 00");
    EXPECT_EQ(input.findings(), "problem at 001E: part 7 (element 1 of 2) is missing\n");
}

TEST(ListElements, EnormousNumberOfElements_IsOneProblem) {
    const DecodedInput input(list("00 00 00 00 00 00 00 04 FF FF FF FF"));
    EXPECT_EQ(input.findings(), "problem at 0016: part 5 (element 0 of 4294967295) is missing\n");
}

TEST(ListElements, MissingNumber_IsAProblem) {
    const DecodedInput input(list("00 00 00 05 00 00 00 00"));
    EXPECT_EQ(input.decoded().summary, "unknown number of elements");
    EXPECT_EQ(input.findings(), "problem at 0012: part 0 (number of elements) is missing\n");
}

TEST(ListElements, PartThatTheListDoesNotUse_IsANote) {
    const DecodedInput input(list("00 00 00 00 00 00 00 01 01") +
                             "00 00 00 05 00 00 00 00 00 00 00 06 00 00 00 00 00 00 00 07 00 00 00 00 "
                             "00 00 00 03 00 00 00 00");
    EXPECT_EQ(input.findings(),
              "note at 001B: the list does not use part 6\n"
              "note at 0023: the list does not use part 7\n"
              "note at 002B: the list does not use part 3\n");
    EXPECT_EQ(input.decoded().summary, "1 element");
}

TEST(ListElements, DamagedList_HasNoMissingElements) {
    const DecodedInput input(list(kTwoElements) + "00 00");
    EXPECT_EQ(input.findings(),
              "problem at 0016: the header of a part has 8 bytes, but the block has only 2 bytes more\n");
}

}  // namespace
}  // namespace dovrel::tools
