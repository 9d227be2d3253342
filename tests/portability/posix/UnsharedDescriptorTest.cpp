#include "portability/posix/UnsharedDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/Processes.h"

using namespace portability;

namespace {

std::string describeFile(int descriptor) {
    char target[200] = {};
    const ssize_t length =
        readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), target, sizeof target);
    return std::string(target, length < 0 ? 0 : static_cast<size_t>(length));
}

UnsharedDescriptor opened(const char* file) {
    const ForkPause pause;
    UnsharedDescriptor descriptor;
    EXPECT_TRUE(descriptor.take(FileDescriptor(open(file, O_RDONLY | O_CLOEXEC))));
    return descriptor;
}

}  // namespace

TEST(UnsharedDescriptor, InAForkedProcess_IsTheNullDevice) {
    const UnsharedDescriptor descriptor = opened("/proc");
    EXPECT_EQ(describeFile(descriptor.get()), "/proc");
    EXPECT_EQ(inForkedProcess([&] { return describeFile(descriptor.get()) == "/dev/null" ? 0 : 1; }), 0);
    EXPECT_EQ(inForkedProcess([&] { return fcntl(descriptor.get(), F_GETFD) == FD_CLOEXEC ? 0 : 1; }), 0);
    EXPECT_EQ(describeFile(descriptor.get()), "/proc") << "this process keeps it";
}

TEST(UnsharedDescriptor, ThatWasMoved_IsUnsharedAsBefore) {
    UnsharedDescriptor first = opened("/proc");
    UnsharedDescriptor second = std::move(first);
    first = opened("/sys");
    std::swap(first, second);
    EXPECT_EQ(inForkedProcess([&] {
                  return describeFile(first.get()) == "/dev/null" && describeFile(second.get()) == "/dev/null"
                             ? 0
                             : 1;
              }),
              0);
}

TEST(UnsharedDescriptor, ThatWasClosed_LeavesItsNumberToOthers) {
    int number = -1;
    {
        const UnsharedDescriptor descriptor = opened("/proc");
        number = descriptor.get();
    }
    const FileDescriptor shared(open("/sys", O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(shared.get(), number);
    EXPECT_EQ(inForkedProcess([&] { return describeFile(number) == "/sys" ? 0 : 1; }), 0);
}

TEST(UnsharedDescriptor, InAForkedProcess_CanBeClosedAndOpenedAnew) {
    UnsharedDescriptor descriptor = opened("/proc");
    EXPECT_EQ(
        inForkedProcess([&] {
            descriptor.close();
            descriptor = opened("/sys");
            if (describeFile(descriptor.get()) != "/sys") return 1;
            return inForkedProcess([&] { return describeFile(descriptor.get()) == "/dev/null" ? 0 : 2; });
        }),
        0);
}

TEST(UnsharedDescriptor, MoreThanThereCanBe_AreClosedWithAnError) {
    std::vector<UnsharedDescriptor> many;
    for (int i = 0; i < 256; ++i)
        many.push_back(opened("/proc"));
    UnsharedDescriptor last;
    {
        const ForkPause pause;
        EXPECT_FALSE(last.take(FileDescriptor(open("/proc", O_RDONLY | O_CLOEXEC))));
    }
    EXPECT_EQ(errno, EMFILE);
    EXPECT_FALSE(last);
    many.pop_back();
    EXPECT_TRUE(opened("/proc"));
}
