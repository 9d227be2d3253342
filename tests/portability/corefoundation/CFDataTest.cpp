// Contract tests of data objects.
#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/portability/support/Held.h"

TEST(CFData, Create_CopiesTheBytes) {
    UInt8 bytes[] = {1, 0, 255};
    const Held<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, bytes, sizeof bytes));
    bytes[0] = 9;
    EXPECT_EQ(CFGetTypeID(data.get()), CFDataGetTypeID());
    ASSERT_EQ(CFDataGetLength(data.get()), 3);
    const UInt8* const copy = CFDataGetBytePtr(data.get());
    EXPECT_EQ(std::string(copy, copy + 3), std::string("\1\0\xFF", 3));
}

TEST(CFData, Create_NoBytes_IsEmpty) {
    const Held<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, nullptr, 0));
    ASSERT_NE(data.get(), nullptr);
    EXPECT_EQ(CFDataGetLength(data.get()), 0);
}
