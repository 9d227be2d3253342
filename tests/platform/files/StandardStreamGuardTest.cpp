#include "platform/files/StandardStreamGuard.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/FileReplacement.h"
#include "platform/trace/Trace.h"
#include "tests/platform/files/ScratchFolder.h"
#include "tests/support/Processes.h"

namespace dovrel {
namespace {

bool isOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) >= 0;
}

bool areStandardStreamsClosed() {
    return !isOpen(STDIN_FILENO) && !isOpen(STDOUT_FILENO) && !isOpen(STDERR_FILENO);
}

// Returns the result of `check` in a copy of this process whose standard streams are closed.
template <typename Check>
bool holdsWithoutStandardStreams(Check check) {
    return inForkedProcess([&check] {
               for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
                   close(stream);
               return check() ? 0 : 1;
           }) == 0;
}

TEST(StandardStreamGuard, WhileItExists_FilesGetHigherNumbers) {
    EXPECT_TRUE(holdsWithoutStandardStreams([] {
        const StandardStreamGuard guard;
        return open("/dev/null", O_RDONLY) > STDERR_FILENO;
    }));
}

TEST(StandardStreamGuard, AfterItsEnd_TheStreamsAreClosedAsBefore) {
    EXPECT_TRUE(holdsWithoutStandardStreams([] {
        {
            const StandardStreamGuard guard;
            errno = EDOM;
        }
        return errno == EDOM && areStandardStreamsClosed();
    }));
}

TEST(StandardStreamGuard, OfAHostThatHasItsStreams_OpensNothing) {
    const int before = open("/dev/null", O_RDONLY);
    const StandardStreamGuard guard;
    const int meanwhile = open("/dev/null", O_RDONLY);
    EXPECT_EQ(meanwhile, before + 1);
    close(meanwhile);
    close(before);
}

TEST(StandardStreamGuard, TraceOfAHostWithoutStreams_LeavesTheirNumbersFree) {
    const test::ScratchFolder folder;
    EXPECT_TRUE(holdsWithoutStandardStreams([&folder] {
        const Trace trace("all,file=" + folder.path("trace"));
        Trace::write(TraceArea::kSession, TraceLevel::kFailures, [] { return std::string("line"); });
        return areStandardStreamsClosed();
    }));
    EXPECT_NE(test::ScratchFolder::readFile(folder.path("trace")).find("line"), std::string::npos);
}

TEST(StandardStreamGuard, WriterOfAHostWithoutStreams_LeavesTheirNumbersFree) {
    const test::ScratchFolder folder;
    EXPECT_TRUE(holdsWithoutStandardStreams([&folder] {
        return replaceFileContent(folder.path("settings"), "1") &&
               replaceFileContent(folder.path("settings"), "2") && areStandardStreamsClosed();
    }));
    EXPECT_EQ(test::ScratchFolder::readFile(folder.path("settings")), "2");
}

}  // namespace
}  // namespace dovrel
