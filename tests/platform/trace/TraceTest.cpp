#include "platform/trace/Trace.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <new>
#include <string>
#include <thread>
#include <vector>

#include "platform/time/Timestamp.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TraceLines.h"

namespace dovrel {
namespace {

using test::splitTraceLines;

constexpr auto kArea = TraceArea::kExchange;

class TraceTest : public testing::Test {
  protected:
    std::string setting(const std::string& areas) const { return areas + ",file=" + file_; }
    std::vector<std::string> lines() const { return splitTraceLines(folder_.read("trace")); }

    test::TemporaryFolder folder_;
    const std::string file_ = folder_.path("trace");
};

TEST_F(TraceTest, WithoutATrace_NothingIsWantedAndNoTextIsMade) {
    for (const TraceArea area :
         {TraceArea::kConnection, TraceArea::kExchange, TraceArea::kSession, TraceArea::kCalls})
        EXPECT_FALSE(Trace::wants(area, TraceLevel::kFailures));
    bool made = false;
    Trace::write(kArea, TraceLevel::kFailures, [&made] {
        made = true;
        return std::string("line");
    });
    EXPECT_FALSE(made);
}

TEST_F(TraceTest, Level_IncludesThoseBeforeIt) {
    const Trace trace(setting("exchange:2"));
    EXPECT_TRUE(Trace::wants(kArea, TraceLevel::kFailures));
    EXPECT_TRUE(Trace::wants(kArea, TraceLevel::kSteps));
    EXPECT_FALSE(Trace::wants(kArea, TraceLevel::kContents));
    EXPECT_FALSE(Trace::wants(TraceArea::kConnection, TraceLevel::kFailures));
}

TEST_F(TraceTest, Line_NamesProcessTimeAndArea) {
    const Trace trace(setting("all"));
    Trace::write(TraceArea::kConnection, TraceLevel::kSteps, [] { return std::string("one"); });
    Trace::write(TraceArea::kExchange, TraceLevel::kFailures, [] { return std::string("two"); });
    EXPECT_EQ(lines(), (std::vector<std::string>{"connection: one", "exchange: two"}));
}

TEST_F(TraceTest, LineWithTheTimeOfDay_BeginsWithIt) {
    const std::string before = timestampText();
    {
        const Trace trace(setting("all,time"));
        Trace::write(kArea, TraceLevel::kSteps, [] { return std::string("one\ntwo"); });
    }
    const std::string after = timestampText();
    const std::string written = folder_.read("trace");
    EXPECT_LE(before, written.substr(0, before.size()));
    EXPECT_GE(after, written.substr(0, after.size()));
    const std::string rest = written.substr(before.size());
    EXPECT_EQ(rest.compare(0, 8, " dovrel "), 0) << written;
    EXPECT_NE(rest.find(" us exchange: one\n    two\n"), std::string::npos) << written;
}

TEST_F(TraceTest, Text_IsWrittenAsUTF8WithLineFeeds) {
    const Trace trace(setting("all"));
    Trace::write(kArea, TraceLevel::kSteps, [] {
        return std::string(
            "gr\x9A\xA7"
            "er als groß\rzwei");
    });
    const std::string written = folder_.read("trace");
    EXPECT_NE(written.find(" us exchange: größer als groß\n    zwei\n"), std::string::npos) << written;
}

TEST_F(TraceTest, TextWithALineOfTheTraceInIt_IsOneEntry) {
    const Trace trace(setting("all"));
    Trace::write(kArea, TraceLevel::kSteps,
                 [] { return std::string("one\ndovrel 1 2 us exchange: forged"); });
    Trace::write(kArea, TraceLevel::kSteps, [] { return std::string("two"); });
    EXPECT_EQ(
        test::splitTraceEntries(folder_.read("trace")),
        (std::vector<std::string>{"exchange: one\n    dovrel 1 2 us exchange: forged", "exchange: two"}));
}

TEST_F(TraceTest, SettingThatIsNotUnderstood_CannotForgeALineEither) {
    { const Trace trace(setting("nonsense\ndovrel 1 2 us all: well")); }
    EXPECT_EQ(test::splitTraceEntries(folder_.read("trace")),
              std::vector<std::string>{"not understood: nonsense\n    | dovrel 1 2 us all: well"});
}

TEST_F(TraceTest, TextThatIsEmpty_WritesNoLine) {
    const Trace trace(setting("all"));
    Trace::write(kArea, TraceLevel::kSteps, [] { return std::string(); });
    EXPECT_TRUE(lines().empty());
}

TEST_F(TraceTest, TextThatCannotBeMade_DisturbsNothing) {
    const Trace trace(setting("all"));
    Trace::write(kArea, TraceLevel::kSteps, []() -> std::string { throw std::bad_alloc(); });
    Trace::write(kArea, TraceLevel::kSteps, [] { return std::string("next"); });
    EXPECT_EQ(lines(), std::vector<std::string>{"exchange: next"});
}

TEST_F(TraceTest, SettingThatIsNotUnderstood_IsToldInTheFirstLine) {
    { const Trace trace(setting("nonsense,exchange:9")); }
    EXPECT_EQ(lines(), std::vector<std::string>{"not understood: nonsense exchange:9"});
}

TEST_F(TraceTest, AfterTheEnd_NothingIsWanted) {
    { const Trace trace(setting("all")); }
    EXPECT_FALSE(Trace::wants(kArea, TraceLevel::kFailures));
}

TEST_F(TraceTest, File_IsForItsOwnerOnlyAndAddedTo) {
    for (const char* text : {"first", "second"}) {
        const Trace trace(setting("all"));
        Trace::write(kArea, TraceLevel::kSteps, [text] { return std::string(text); });
    }
    EXPECT_EQ(lines(), (std::vector<std::string>{"exchange: first", "exchange: second"}));
    struct stat status = {};
    ASSERT_EQ(stat(file_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777 & ~0600u, 0u);
}

TEST_F(TraceTest, File_OfAHostWhoseUmaskTakesAllRights_IsAddedToByTheNextSession) {
    ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
    EXPECT_TRUE(holdsForOrdinaryUser([this] {
        umask(0777);
        for (const char* text : {"first", "second"}) {
            const Trace trace(setting("all"));
            Trace::write(kArea, TraceLevel::kSteps, [text] { return std::string(text); });
        }
        return true;
    }));
    const std::string written = folder_.read("trace");
    EXPECT_NE(written.find("exchange: first\n"), std::string::npos) << written;
    EXPECT_NE(written.find("exchange: second\n"), std::string::npos) << written;
}

TEST_F(TraceTest, LinkOrFolderOrPipeInPlaceOfTheFile_SendsTheLinesToStandardError) {
    folder_.write("other", "");
    ASSERT_EQ(symlink(folder_.path("other").c_str(), folder_.path("link").c_str()), 0);
    ASSERT_EQ(mkdir(folder_.path("folder").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo(folder_.path("pipe").c_str(), 0600), 0);
    for (const char* name : {"link", "folder", "pipe", "missing/trace"}) {
        testing::internal::CaptureStderr();
        {
            const Trace trace("all,file=" + folder_.path(name));
            Trace::write(kArea, TraceLevel::kSteps, [] { return std::string("line"); });
        }
        EXPECT_EQ(splitTraceLines(testing::internal::GetCapturedStderr()),
                  std::vector<std::string>{"exchange: line"})
            << name;
    }
    EXPECT_EQ(folder_.read("other"), "");
}

TEST_F(TraceTest, WithoutAFile_GoesToStandardErrorAndNotToStandardOutput) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    {
        const Trace trace("exchange");
        Trace::write(kArea, TraceLevel::kSteps, [] { return std::string("line"); });
    }
    EXPECT_EQ(splitTraceLines(testing::internal::GetCapturedStderr()),
              std::vector<std::string>{"exchange: line"});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(TraceTest, LinesOfSeveralThreads_DoNotMix) {
    const Trace trace(setting("all"));
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        threads.emplace_back([letter] {
            for (int i = 0; i < 100; ++i)
                Trace::write(kArea, TraceLevel::kSteps, [letter] { return std::string(200, letter); });
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::vector<std::string> written = lines();
    EXPECT_EQ(written.size(), 400u);
    for (const std::string& line : written)
        EXPECT_EQ(line, "exchange: " + std::string(200, line.back()));
}

}  // namespace
}  // namespace dovrel
