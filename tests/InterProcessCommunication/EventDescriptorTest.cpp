#include "InterProcessCommunication/EventDescriptor.h"

#include <gtest/gtest.h>

#include "tests/InterProcessCommunication/PlatformDouble.h"

namespace dovrel {
namespace {

TEST(EventDescriptor, New_IsNull) {
    EventDescriptor descriptor;
    EXPECT_FALSE(descriptor.holdsData());
    EXPECT_EQ(descriptor.get()->descriptorType, DescType{typeNull});
    EXPECT_EQ(descriptor.get()->dataHandle, nullptr);
}

TEST(EventDescriptor, Destructor_DisposesOfWhatItHolds) {
    test::PlatformDouble platform;
    {
        EventDescriptor descriptor;
        AECreateDesc(typeChar, "text", 4, descriptor.get());
        EXPECT_TRUE(descriptor.holdsData());
        EXPECT_EQ(platform.livingDescriptors, 1);
    }
    EXPECT_EQ(platform.livingDescriptors, 0);
}

TEST(EventDescriptor, Dispose_TwiceOrOfANullOne_DoesItOnce) {
    test::PlatformDouble platform;
    EventDescriptor descriptor;
    descriptor.dispose();
    AECreateDesc(typeChar, "text", 4, descriptor.get());
    descriptor.dispose();
    descriptor.dispose();
    EXPECT_FALSE(descriptor.holdsData());
    EXPECT_EQ(platform.livingDescriptors, 0);
}

}  // namespace
}  // namespace dovrel
