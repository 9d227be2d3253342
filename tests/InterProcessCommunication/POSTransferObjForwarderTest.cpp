#include "InterProcessCommunication/POSTransferObjForwarder.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

using test::virtualSlot;

static_assert(std::is_abstract_v<POSTransferObjForwarder> &&
              std::has_virtual_destructor_v<POSTransferObjForwarder>);

TEST(POSTransferObjForwarder, VirtualOperations_AreInTheirOrderAfterTheDestructors) {
    EXPECT_EQ(virtualSlot(&POSTransferObjForwarder::ForwardTransferObj), 2u);
    EXPECT_EQ(virtualSlot(&POSTransferObjForwarder::ConnectToPOS), 3u);
    EXPECT_EQ(virtualSlot(&POSTransferObjForwarder::CheckConnection), 4u);
    EXPECT_EQ(virtualSlot(&POSTransferObjForwarder::GetClientProcessID), 5u);
}

}  // namespace
}  // namespace dovrel
