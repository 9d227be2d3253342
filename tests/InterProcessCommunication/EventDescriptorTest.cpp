#include "InterProcessCommunication/EventDescriptor.h"

#include <gtest/gtest.h>

#include "tests/InterProcessCommunication/PlatformDouble.h"

namespace dovrel {
namespace {

TEST(EventDescriptor, New_IsNull) {
    EventDescriptor descriptor;
    EXPECT_EQ(descriptor.get()->descriptorType, DescType{typeNull});
    // A copy, because a descriptor is packed, and a reference cannot bind to a packed member.
    const AEDataStorage data = descriptor.get()->dataHandle;
    EXPECT_EQ(data, nullptr);
}

TEST(EventDescriptor, Destructor_DisposesOfWhatItHolds) {
    test::PlatformDouble platform;
    {
        EventDescriptor descriptor;
        AECreateDesc(typeChar, "text", 4, descriptor.get());
        EXPECT_EQ(descriptor.get()->descriptorType, DescType{typeChar});
        EXPECT_EQ(platform.livingDescriptors, 1);
    }
    EXPECT_EQ(platform.livingDescriptors, 0);
}

TEST(EventDescriptor, Destructor_OfANullOne_DisposesOfNothing) {
    const test::PlatformDouble platform;
    { const EventDescriptor descriptor; }
    EXPECT_EQ(platform.livingDescriptors, 0);
}

}  // namespace
}  // namespace dovrel
