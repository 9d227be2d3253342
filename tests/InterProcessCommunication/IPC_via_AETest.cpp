#include "InterProcessCommunication/IPC_via_AE.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/EventDescriptor.h"
#include "tests/InterProcessCommunication/DeletionWatch.h"
#include "tests/InterProcessCommunication/PlatformDouble.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::PlatformDouble;

static_assert(std::has_virtual_destructor_v<IPC_via_AE>);
static_assert(sizeof(Client_to_POS_Communicator) == sizeof(IPC_via_AE), "derived channels add no members");

class IPC_via_AETest : public testing::Test {
  protected:
    ~IPC_via_AETest() override { EXPECT_EQ(platform.livingDescriptors, 0); }

    /// Calls GetData for an event with this direct parameter. The outputs have other values before the call.
    int32_t getData(const std::optional<std::string>& directParameter) {
        const Client_to_POS_Communicator channel;
        EventDescriptor event;
        PlatformDouble::answerWith(event.get(), directParameter);
        buffer.reset(new uint8_t[4]());
        length = 4;
        return channel.GetData(event.get(), buffer, length);
    }

    /// Does the same with a spare block of `size` bytes. Returns whether the bytes are in it.
    bool usesSpareBlock(uint32_t size, const std::string& directParameter) {
        const Client_to_POS_Communicator channel;
        EventDescriptor event;
        PlatformDouble::answerWith(event.get(), directParameter);
        ByteBlock spare{std::unique_ptr<uint8_t[]>(new uint8_t[size]()), size};
        const uint8_t* const place = spare.data.get();
        test::DeletionWatch watch;
        watch.add(place);
        EXPECT_EQ(channel.GetData(event.get(), std::move(spare), buffer, length), 0);
        const bool isUsed = watch.deletions() == 0;
        // The heap may use the place of a freed block again.
        if (isUsed) {
            EXPECT_EQ(buffer.get(), place);
        }
        EXPECT_EQ(received(), directParameter);
        return isUsed;
    }

    std::string received() const { return std::string(buffer.get(), buffer.get() + length); }

    PlatformDouble platform;
    std::unique_ptr<uint8_t[]> buffer;
    uint32_t length = 0;
};

TEST_F(IPC_via_AETest, CreateEvent_AddressesTheServersSignatureInADescriptorOf8Bytes) {
    const Client_to_POS_Communicator channel;
    EventDescriptor event;
    EXPECT_EQ(channel.CreateEvent('BUFF', 'data', event.get()), 0);
    ASSERT_EQ(platform.created.size(), 1u);
    const test::CreatedEvent& created = platform.created.front();
    EXPECT_EQ(created.eventClass, AEEventClass{0x42554646});
    EXPECT_EQ(created.eventID, AEEventID{0x64617461});
    EXPECT_EQ(created.targetType, DescType{0x7369676E});
    EXPECT_EQ(created.target.size(), 8u);
    EXPECT_EQ(created.target.substr(0, 4), "RBJT");
    EXPECT_EQ(created.returnID, -1);
    EXPECT_EQ(created.transactionID, 0);
}

TEST_F(IPC_via_AETest, CreateEvent_ThatFails_ReturnsThePlatformsError) {
    const Client_to_POS_Communicator channel;
    EventDescriptor event;
    platform.createEventResult = memFullErr;
    EXPECT_EQ(channel.CreateEvent('BUFF', 'data', event.get()), -108);
    EXPECT_EQ(event.get()->descriptorType, DescType{typeNull});
}

TEST_F(IPC_via_AETest, EventCodes_AreThoseOfTheWire) {
    EXPECT_EQ(serverEvent::kBufferClass, AEEventClass{0x42554646});
    EXPECT_EQ(serverEvent::kData, AEEventID{0x64617461});
    EXPECT_EQ(serverEvent::kWakeClient, AEEventID{0x7761436C});
    EXPECT_EQ(std::string(serverEvent::kWakeText, serverEvent::kWakeTextSize), "startPos");
}

TEST_F(IPC_via_AETest, PutData_MakesTheBytesTheDirectParameterAsTheyAre) {
    const Client_to_POS_Communicator channel;
    EventDescriptor event;
    channel.CreateEvent('BUFF', 'data', event.get());
    const uint8_t bytes[] = {0, 'a', 0xFF, 0};
    EXPECT_EQ(channel.PutData(event.get(), bytes, 4), 0);
    EXPECT_EQ(channel.GetData(event.get(), buffer, length), 0);
    EXPECT_EQ(received(), std::string("\0a\xFF\0", 4));
}

TEST_F(IPC_via_AETest, PutData_OfMoreThanAnEventHolds_ReturnsMemoryFull) {
    const Client_to_POS_Communicator channel;
    EventDescriptor event;
    channel.CreateEvent('BUFF', 'data', event.get());
    const uint8_t byte = 0;
    // Lengths that become negative in a 32-bit `Size`. No byte is read.
    EXPECT_EQ(channel.PutData(event.get(), &byte, 0x80000000u), memFullErr);
    EXPECT_EQ(channel.PutData(event.get(), &byte, 0xFFFFFFFFu), memFullErr);
}

TEST_F(IPC_via_AETest, PutData_ThatFails_ReturnsThePlatformsError) {
    const Client_to_POS_Communicator channel;
    EventDescriptor nothing;
    EXPECT_EQ(channel.PutData(nothing.get(), nullptr, 0), errAENotAEDesc);
}

TEST_F(IPC_via_AETest, GetData_ReturnsTheBytesUnchangedAndUnterminated) {
    EXPECT_EQ(getData(std::string("\xC3\0\r\n\xFF", 5)), 0);
    EXPECT_EQ(received(), std::string("\xC3\0\r\n\xFF", 5));
}

TEST_F(IPC_via_AETest, GetData_OfAnEmptyParameter_IsSuccessWithoutBytes) {
    EXPECT_EQ(getData(""), 0);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(length, 0u);
}

TEST_F(IPC_via_AETest, GetData_WithoutAParameter_IsThePlatformsErrorForAMissingOne) {
    EXPECT_EQ(getData(std::nullopt), errAEDescNotFound);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(length, 0u);
}

TEST_F(IPC_via_AETest, GetData_WhenTheSecondReadFails_ReleasesTheBlockAndReturnsItsError) {
    platform.secondGetResult = memFullErr;
    EXPECT_EQ(getData("bytes"), memFullErr);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(length, 0u);
}

// The sender can change memory that it shares with this process.
TEST_F(IPC_via_AETest, GetData_WhenTheSizeChangesBetweenTheReads_IsCorruptDataWithoutBytes) {
    for (const Size size : {0, 4, 6}) {
        platform.secondGetSize = size;
        EXPECT_EQ(getData("bytes"), errAECorruptData) << size;
        EXPECT_EQ(buffer, nullptr);
        EXPECT_EQ(length, 0u);
    }
    platform.secondGetSize = 5;
    EXPECT_EQ(getData("bytes"), 0);
    EXPECT_EQ(received(), "bytes");
}

TEST_F(IPC_via_AETest, GetDataWithASpareBlock_UsesItIfTheBytesFit) {
    EXPECT_TRUE(usesSpareBlock(5, "bytes"));
    EXPECT_TRUE(usesSpareBlock(500, "bytes"));
}

TEST_F(IPC_via_AETest, GetDataWithASpareBlock_FreesItIfItIsTooSmallOrTooLarge) {
    EXPECT_FALSE(usesSpareBlock(4, "bytes"));
    EXPECT_FALSE(usesSpareBlock(5000, "bytes"));
    EXPECT_FALSE(usesSpareBlock(5, ""));
}

TEST_F(IPC_via_AETest, GetDataIntoAnArray_ReplacesTheContent) {
    const Client_to_POS_Communicator channel;
    for (const std::string& text : {std::string("\0text\xFF", 6), std::string()}) {
        EventDescriptor event;
        PlatformDouble::answerWith(event.get(), text);
        CPPByteArray array = test::makeArray("old");
        EXPECT_EQ(channel.GetData(event.get(), array), 0);
        EXPECT_EQ(test::toText(array), text);
    }
}

TEST_F(IPC_via_AETest, GetDataIntoAnArray_ThatFails_LeavesItEmpty) {
    const Client_to_POS_Communicator channel;
    EventDescriptor event;
    PlatformDouble::answerWith(event.get(), "text");
    platform.secondGetResult = memFullErr;
    CPPByteArray array = test::makeArray("old");
    EXPECT_EQ(channel.GetData(event.get(), array), memFullErr);
    EXPECT_EQ(array.getSize(), 0u);
}

TEST_F(IPC_via_AETest, Destructor_DisposesOfTheAddress) {
    {
        const Client_to_POS_Communicator channel;
        EXPECT_EQ(platform.livingDescriptors, 1);
    }
    EXPECT_EQ(platform.livingDescriptors, 0);
}

}  // namespace
}  // namespace dovrel
