#include "portability/transport/DescriptorCloser.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>

#include "tests/support/Processes.h"
#include "tests/support/WaitUntil.h"

using namespace portability;

namespace {

FileDescriptor anyDescriptor() {
    return FileDescriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

}  // namespace

TEST(DescriptorCloser, Descriptors_AreClosedSoon) {
    const int before = openDescriptors();
    DescriptorCloser closer;
    for (int i = 0; i < 200; ++i)
        closer.close(anyDescriptor());
    EXPECT_TRUE(dovrel::test::waitUntil([before] { return openDescriptors() == before; }));
}

TEST(DescriptorCloser, Descriptors_ThatWaitAtTheEnd_AreClosedAllTheSame) {
    const int before = openDescriptors();
    {
        DescriptorCloser closer;
        for (int i = 0; i < 50; ++i)
            closer.close(anyDescriptor());
    }
    EXPECT_TRUE(dovrel::test::waitUntil([before] { return openDescriptors() == before; }));
}

TEST(DescriptorCloser, EmptyDescriptor_IsIgnored) {
    DescriptorCloser closer;
    closer.close(FileDescriptor());
    closeWithoutLinger(FileDescriptor());
}
