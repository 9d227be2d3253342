#include "InterProcessCommunication/POS_to_Client_Communicator.h"

#include <gtest/gtest.h>

#include "InterProcessCommunication/EventDescriptor.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "tests/InterProcessCommunication/PlatformDouble.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::toHex;

std::string toWireForm(const POSTransferObj& object) {
    return test::toText(object.bytes());
}

class POS_to_Client_CommunicatorTest : public testing::Test {
  protected:
    /// Returns the result for an event with this direct parameter.
    int32_t receive(const std::optional<std::string>& directParameter) {
        const POS_to_Client_Communicator communicator;
        EventDescriptor event;
        test::PlatformDouble::answerWith(event.get(), directParameter);
        return communicator.ReceiveTransferObj(event.get(), object);
    }

    POSTransferObj object;
};

TEST_F(POS_to_Client_CommunicatorTest, ReceiveTransferObj_RebuildsTheObjectThatWasSent) {
    POSTransferObj sent(1, 10, 11);
    sent.writeUInt32(103, 5);
    EXPECT_EQ(receive(toWireForm(sent)), 0);
    EXPECT_EQ(toHex(object.bytes()), toHex(sent.bytes()));
    EXPECT_EQ(object.getCommand(), 11u);
    EXPECT_EQ(object.readUInt32(103), 5u);
}

TEST_F(POS_to_Client_CommunicatorTest, ReceiveTransferObj_OfAnEmptyParameter_LeavesTheObject) {
    const std::string before = toWireForm(object);
    EXPECT_EQ(receive(""), 0);
    EXPECT_EQ(toWireForm(object), before);
}

TEST_F(POS_to_Client_CommunicatorTest,
       ReceiveTransferObj_WithoutAParameter_ReturnsTheErrorAndLeavesTheObject) {
    const std::string before = toWireForm(object);
    EXPECT_EQ(receive(std::nullopt), errAEDescNotFound);
    EXPECT_EQ(toWireForm(object), before);
}

}  // namespace
}  // namespace dovrel
