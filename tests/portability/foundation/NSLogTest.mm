#import <Foundation/Foundation.h>

#include <errno.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/VariableChange.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class NSLogTest : public testing::Test {
   protected:
    static std::string captureLog(NSString* message) {
        testing::internal::CaptureStderr();
        NSLog(@"<%@>", message);
        return testing::internal::GetCapturedStderr();
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];

    ~NSLogTest() override { [pool_ release]; }
};

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

TEST_F(NSLogTest, Line_BeginsWithTimeProgramAndProcess) {
    const std::string log = captureLog(@"message");
    const std::string process = "[" + std::to_string(getpid()) + ":" + std::to_string(getpid()) + "] ";
    EXPECT_TRUE(endsWith(log, " portability_foundation_tests" + process + "<message>\n")) << log;
    EXPECT_EQ(log.find_first_not_of("0123456789-:. "), log.find("portability")) << log;
    EXPECT_EQ(log.find("portability"), sizeof "2026-11-22 00:15:34.205") << log;
}

TEST_F(NSLogTest, MessageWithALineEnd_ReceivesNoSecondOne) {
    testing::internal::CaptureStderr();
    NSLog(@"message\n");
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(endsWith(log, "] message\n")) << log;
}

TEST_F(NSLogTest, Message_IsWrittenInUTF8) {
    const std::string log = captureLog([NSString stringWithUTF8String:"Größe, 日本"]);
    EXPECT_TRUE(endsWith(log, "<Größe, 日本>\n")) << log;
}

TEST_F(NSLogTest, ControlCharactersOfAMessage_DoNotReachTheTerminal) {
    const std::string log = captureLog(@"red \x1B[31m, bell \a, tab\t, line\nend\x7F");
    EXPECT_TRUE(endsWith(log, "<red \\x1B[31m, bell \\x07, tab\t, line\nend\\x7F>\n")) << log;
}

TEST_F(NSLogTest, ProgramWhoseNameIsNotUTF8_IsNamedInUTF8) {
    char* const name = program_invocation_short_name;
    char macRoman[] = "Gr\x9A\xA7"
                      "e";
    program_invocation_short_name = macRoman;
    const std::string log = captureLog(@"message");
    program_invocation_short_name = name;
    EXPECT_NE(log.find(" Größe["), std::string::npos) << log;
}

TEST_F(NSLogTest, ProcessWithAnotherEncoding_StillWritesUTF8) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // so that the process starts with this variable
    setenv("GNUSTEP_STRING_ENCODING", "NSISOLatin1StringEncoding", 1);
    const auto logAndEnd = [] {
        NSLog(@"<%@>", [NSString stringWithUTF8String:"Größe"]);
        std::_Exit(0);
    };
    EXPECT_EXIT(logAndEnd(), testing::ExitedWithCode(0), "<Größe>\n");
}

TEST_F(NSLogTest, ProcessWithoutStandardError_GoesOn) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto closeAndLog = [] {
        close(STDERR_FILENO);
        NSLog(@"nobody reads this");
        std::_Exit(0);
    };
    EXPECT_EXIT(closeAndLog(), testing::ExitedWithCode(0), "^$");
}

TEST_F(NSLogTest, ProcessWhoseStandardErrorNobodyReads_GoesOnAndReceivesNoSignal) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto breakAndLog = [] {
        int ends[2];
        if (pipe(ends) != 0) std::_Exit(2);
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        signal(SIGPIPE, SIG_DFL);
        NSLog(@"nobody reads this");
        sigset_t set;
        sigpending(&set);
        const bool isPending = sigismember(&set, SIGPIPE) == 1;
        pthread_sigmask(SIG_SETMASK, nullptr, &set);
        std::_Exit(isPending || sigismember(&set, SIGPIPE) == 1 ? 1 : 0);
    };
    EXPECT_EXIT(breakAndLog(), testing::ExitedWithCode(0), "");
}

TEST_F(NSLogTest, SignalOfABrokenPipeThatWaitsForTheHost_IsNotTakenAway) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto raiseAndLog = [] {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &set, nullptr);
        raise(SIGPIPE);
        NSLog(@"message");
        sigpending(&set);
        std::_Exit(sigismember(&set, SIGPIPE) == 1 ? 0 : 1);
    };
    EXPECT_EXIT(raiseAndLog(), testing::ExitedWithCode(0), "message");
}

TEST_F(NSLogTest, Format_IsFilledIn) {
    testing::internal::CaptureStderr();
    NSLog(@"%@ is %d of %s", @"one", 1, "two");
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(endsWith(log, "] one is 1 of two\n")) << log;
}

TEST_F(NSLogTest, LongTexts_AreWhole) {
    const std::string text(100000, 'x');
    EXPECT_TRUE(endsWith(captureLog([NSString stringWithUTF8String:text.c_str()]), "<" + text + ">\n"));
}

TEST_F(NSLogTest, TheHostsLocaleAndHomeFolder_StayAsTheyAre) {
    const dovrel::test::TemporaryFolder home;
    const VariableChange homeFolder("HOME", home.path().c_str());
    const VariableChange locale("LC_ALL", "C.UTF-8");
    const std::string before = std::setlocale(LC_ALL, nullptr);
    captureLog(@"text");
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

}  // namespace
