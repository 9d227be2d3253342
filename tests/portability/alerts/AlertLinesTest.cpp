#include "portability/alerts/AlertLines.h"

#include <gtest/gtest.h>

#include <string>

#include "portability/alerts/AlertMessages.h"

namespace portability {
namespace {

bool append(AlertLines& lines, const std::string& bytes) {
    return lines.append(bytes.data(), bytes.size());
}

TEST(AlertLines, Next_TakesLinesInTheirOrderWithoutTheirLineFeeds) {
    AlertLines lines;
    EXPECT_TRUE(append(lines, "one\n\nthree\nfour"));
    EXPECT_EQ(lines.next(), "one");
    EXPECT_EQ(lines.next(), "");
    EXPECT_EQ(lines.next(), "three");
    EXPECT_EQ(lines.next(), std::nullopt);
}

TEST(AlertLines, Next_ALineInSinglePiecesIsTakenOnceItIsComplete) {
    AlertLines lines;
    for (const char* piece : {"o", "n", "", "e"}) {
        EXPECT_TRUE(append(lines, piece));
        EXPECT_EQ(lines.next(), std::nullopt);
    }
    EXPECT_TRUE(append(lines, "\n"));
    EXPECT_EQ(lines.next(), "one");
}

TEST(AlertLines, HasRest_ReturnsWhetherAllWasTaken) {
    AlertLines lines;
    EXPECT_FALSE(lines.hasRest());
    append(lines, "one\nt");
    lines.next();
    EXPECT_TRUE(lines.hasRest());
    append(lines, "wo\n");
    lines.next();
    EXPECT_FALSE(lines.hasRest());
}

TEST(AlertLines, Append_RefusesALineThatIsTooLongAndAllThatFollows) {
    const std::string longest(kLongestAlertLine, 'x');
    AlertLines lines;
    EXPECT_TRUE(append(lines, longest));
    EXPECT_TRUE(append(lines, "\n" + longest));
    EXPECT_FALSE(append(lines, "x"));
    EXPECT_FALSE(append(lines, "\n"));
    EXPECT_EQ(lines.next(), longest);
    EXPECT_EQ(lines.next(), std::nullopt);
}

}  // namespace
}  // namespace portability
