// Foundation must not change the host's own state, however it is used. Each use is in a forked process,
// because a process can use Foundation for the first time only once.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <objc/runtime.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

#include "portability/foundation/ImportedFunction.h"
#include "tests/support/HostState.h"

namespace {

using dovrel::test::HostState;
using portability::ImportedFunction;

constexpr char kLocale[] = "C.UTF-8";

// Returns true if the condition holds in a copy of this process. In the copy, SIGPIPE has its default action,
// and the environment names another locale than the one that the process uses.
template <typename Condition>
bool isTrueInAFreshProcess(Condition condition) {
    const pid_t process = fork();
    if (process == 0) {
        signal(SIGPIPE, SIG_DFL);
        setenv("LC_ALL", kLocale, 1);
        _exit(condition() ? 0 : 1);
    }
    int status = -1;
    return waitpid(process, &status, 0) == process && status == 0;
}

bool ignoresBrokenPipes() {
    struct sigaction action = {};
    sigaction(SIGPIPE, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

std::string currentCharacterLocale() { return std::setlocale(LC_CTYPE, nullptr); }

// Creates an autorelease pool in the same way as the code of a host.
void useAsAHost() {
    const id pool = [[objc_getClass("NSAutoreleasePool") alloc] init];
    [NSUserDefaults standardUserDefaults];
    [pool release];
}

void useInPool(void (*use)()) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    use();
    [pool release];
}

// Describing an array with several kinds of values reads the user's settings.
void describeValues() {
    const id values = [@"<?xml version=\"1.0\"?><plist version=\"1.0\"><array><integer>1</integer>"
                       @"<date>2001-02-03T04:05:06Z</date></array></plist>" propertyList];
    if ([[NSString stringWithFormat:@"%@", values] length] == 0) _exit(2);
}

void launchInVain() {
    NSTask* const task = [[NSTask alloc] init];
    @try {
        [task setLaunchPath:@"/no/such/program"];
        [task launch];
        _exit(2);
    } @catch (...) {
        NSLog(@"%@", [[NSArray arrayWithObject:@"argument"] description]);
    }
    [task release];
}

void readSettings() { [NSUserDefaults standardUserDefaults]; }

bool leavesTheHostAsItWas(void (*use)()) {
    return isTrueInAFreshProcess([use] {
        const HostState before;
        useInPool(use);
        for (const std::string& change : before.changes()) std::cerr << change << std::endl;
        return before.changes().empty();
    });
}

}  // namespace

TEST(FoundationUse, InAPool_LeavesWhatBelongsToTheHost) {
    EXPECT_TRUE(leavesTheHostAsItWas([] {}));
    EXPECT_TRUE(leavesTheHostAsItWas(describeValues));
    EXPECT_TRUE(leavesTheHostAsItWas(launchInVain));
    EXPECT_TRUE(leavesTheHostAsItWas(readSettings));
}

TEST(FoundationUse, InNestedPools_LeavesWhatBelongsToTheHostUntilTheLastEnds) {
    EXPECT_TRUE(leavesTheHostAsItWas([] {
        useInPool([] {});
        readSettings();
    }));
}

TEST(FoundationUse, InPoolsOfSeveralThreads_LeavesWhatBelongsToTheHost) {
    EXPECT_TRUE(leavesTheHostAsItWas([] {
        std::thread([] { useInPool([] {}); }).join();
        readSettings();
    }));
}

// Checks that the tests above are able to fail.
TEST(FoundationUse, ByTheHostItself_ChangesWhatFoundationWants) {
    EXPECT_TRUE(isTrueInAFreshProcess([] {
        useAsAHost();
        return ignoresBrokenPipes() && currentCharacterLocale() == kLocale;
    }));
}

TEST(FoundationUse, ByTheHostItselfBesideAPool_ChangesWhatFoundationWants) {
    EXPECT_TRUE(isTrueInAFreshProcess([] {
        useInPool([] { std::thread(useAsAHost).join(); });
        return currentCharacterLocale() == kLocale;
    }));
}

TEST(FoundationUse, ByTheHostItselfAfterAPool_ChangesWhatFoundationWants) {
    EXPECT_TRUE(isTrueInAFreshProcess([] {
        useInPool([] {});
        useAsAHost();
        return currentCharacterLocale() == kLocale;
    }));
}

TEST(ImportedFunctionTest, FunctionThatTheLibraryDoesNotCall_IsNotChanged) {
    ImportedFunction function(objc_getClass("NSObject"), "no_such_function");
    function.redirect(nullptr);
    function.restore();
}

TEST(ImportedFunctionTest, AddressOutsideAllLibraries_ChangesNothing) {
    int local = 0;
    ImportedFunction function(&local, "setlocale");
    function.redirect(nullptr);
    function.restore();
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
}
