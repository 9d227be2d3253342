// Contract tests of tasks.
#import <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <string>

#include "tests/support/WaitUntil.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class Tasks : public testing::Test {
   protected:
    Tasks() : pool_([[NSAutoreleasePool alloc] init]), task_([[NSTask alloc] init]) {}
    ~Tasks() override {
        [task_ release];
        [pool_ release];
    }

    void prepareShell(const char* script) {
        [task_ setLaunchPath:@"/bin/sh"];
        [task_ setArguments:[NSArray arrayWithObjects:@"-c", [NSString stringWithUTF8String:script], nil]];
    }

    int runTask() {
        EXPECT_TRUE(dovrel::test::waitUntil([this] { return ![task_ isRunning]; }));
        return [task_ terminationStatus];
    }

    // Not a template, because GCC omits the body of @try in a template.
    static bool raises(const std::function<void()>& action) {
        @try {
            action();
        } @catch (...) {
            return true;
        }
        return false;
    }

    const dovrel::test::TemporaryFolder folder_;
    NSAutoreleasePool* const pool_;
    NSTask* const task_;
};

std::string toText(NSData* data) {
    return std::string(static_cast<const char*>([data bytes]), [data length]);
}

}  // namespace

TEST_F(Tasks, Task_RunsUntilItsProgramEndsAndHasItsStatus) {
    prepareShell("read line; exit 3");
    int input[2];
    ASSERT_EQ(pipe(input), 0);
    const int standardInput = dup(0);
    dup2(input[0], 0);
    EXPECT_FALSE([task_ isRunning]);
    [task_ launch];
    dup2(standardInput, 0);
    EXPECT_TRUE([task_ isRunning]);
    EXPECT_EQ(write(input[1], "\n", 1), 1);
    EXPECT_EQ(runTask(), 3);
    for (const int descriptor : {input[0], input[1], standardInput}) close(descriptor);
}

TEST_F(Tasks, StatusOfAProgramThatASignalEnded_IsTheSignal) {
    prepareShell("kill -TERM $$");
    [task_ launch];
    EXPECT_EQ(runTask(), SIGTERM);
}

TEST_F(Tasks, Outputs_CanBeReadFromTheirPipesToTheEnd) {
    NSPipe* const output = [NSPipe pipe];
    NSPipe* const error = [NSPipe pipe];
    [task_ setStandardOutput:output];
    [task_ setStandardError:error];
    prepareShell("echo to the output; echo to the error >&2");
    [task_ launch];
    EXPECT_EQ(toText([[output fileHandleForReading] readDataToEndOfFile]), "to the output\n");
    EXPECT_EQ(toText([[error fileHandleForReading] readDataToEndOfFile]), "to the error\n");
    EXPECT_EQ(runTask(), 0);
}

TEST_F(Tasks, OnePipeForBothOutputs_HoldsBoth) {
    NSPipe* const pipe = [NSPipe pipe];
    [task_ setStandardOutput:pipe];
    [task_ setStandardError:pipe];
    prepareShell("echo first; echo second >&2");
    [task_ launch];
    EXPECT_EQ(toText([[pipe fileHandleForReading] readDataToEndOfFile]), "first\nsecond\n");
    runTask();
}

TEST_F(Tasks, OutputBeyondWhatAPipeHolds_WaitsForItsReaderAndLosesNothing) {
    NSPipe* const output = [NSPipe pipe];
    [task_ setStandardOutput:output];
    prepareShell("head -c 300000 /dev/zero; exit 5");
    [task_ launch];
    EXPECT_EQ([[[output fileHandleForReading] readDataToEndOfFile] length], 300000u);
    EXPECT_EQ(runTask(), 5);
}

TEST_F(Tasks, Arguments_ReachTheProgramAsTheyAre) {
    NSPipe* const output = [NSPipe pipe];
    [task_ setStandardOutput:output];
    [task_ setLaunchPath:@"/usr/bin/printf"];
    [task_ setArguments:[NSArray arrayWithObjects:@"%s|", @"", @"two words", @"d\u00fcr", nil]];
    [task_ launch];
    EXPECT_EQ(toText([[output fileHandleForReading] readDataToEndOfFile]), "|two words|d\xC3\xBC"
                                                                           "r|");
    EXPECT_EQ(runTask(), 0);
}

TEST_F(Tasks, ProgramThatCannotBeExecuted_RaisesAtTheLaunch) {
    folder_.write("script", "#!/no/such/interpreter\n");
    chmod(folder_.path("script").c_str(), 0755);
    for (const std::string& path : {folder_.path("absent"), folder_.path("script"), folder_.path()}) {
        [task_ setLaunchPath:[NSString stringWithUTF8String:path.c_str()]];
        EXPECT_TRUE(raises([this] { [task_ launch]; })) << path;
        EXPECT_FALSE([task_ isRunning]);
    }
}

TEST_F(Tasks, MissingLaunchPath_Raises) {
    EXPECT_TRUE(raises([this] { [task_ launch]; }));
    EXPECT_TRUE(raises([this] { [task_ setLaunchPath:nil]; }));
}

TEST_F(Tasks, StatusBeforeTheEnd_Raises) {
    EXPECT_TRUE(raises([this] { [task_ terminationStatus]; }));
}

TEST_F(Tasks, TaskThatWasLaunched_RefusesChangesAndASecondLaunch) {
    prepareShell("exit 0");
    [task_ launch];
    EXPECT_TRUE(raises([this] { [task_ launch]; }));
    EXPECT_TRUE(raises([this] { [task_ setLaunchPath:@"/bin/true"]; }));
    EXPECT_TRUE(raises([this] { [task_ setArguments:[NSArray array]]; }));
    EXPECT_TRUE(raises([this] { [task_ setStandardOutput:[NSPipe pipe]]; }));
    EXPECT_TRUE(raises([this] { [task_ setStandardError:[NSPipe pipe]]; }));
    EXPECT_EQ(runTask(), 0);
}
