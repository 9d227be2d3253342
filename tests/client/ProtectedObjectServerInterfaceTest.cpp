#include "client/ProtectedObjectServerInterface.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

using test::virtualSlot;
using Interface = ProtectedObjectServerInterface;

class EmptyServer : public Interface {};

TEST(ProtectedObjectServerInterface, Slots_AreTheDestructorsAndSevenOperations) {
    EXPECT_EQ(virtualSlot(&Interface::registerApplication), 2u);
    EXPECT_EQ(virtualSlot(&Interface::unregisterApplication), 3u);
    EXPECT_EQ(virtualSlot(&Interface::instantiateObject), 4u);
    EXPECT_EQ(virtualSlot(&Interface::callMethod), 5u);
    EXPECT_EQ(virtualSlot(&Interface::deleteObject), 6u);
    EXPECT_EQ(virtualSlot(&Interface::executeCommand), 7u);
    EXPECT_EQ(virtualSlot(&Interface::getInformation), 8u);
    EXPECT_EQ(test::VirtualSlots<EmptyServer>::count(), 9u);
}

TEST(ProtectedObjectServerInterface, ItselfCannotBeMade_OnlyWhatIsDerived) {
    EXPECT_FALSE(std::is_default_constructible_v<Interface>);
    EXPECT_TRUE(std::is_default_constructible_v<EmptyServer>);
}

TEST(ProtectedObjectServerInterface, DefaultOperations_LeaveTheirOutputsUnchanged) {
    EmptyServer server;
    Interface& interface = server;
    CPPByteArray output;
    output.set("as it was", 9);
    CPPObjectID objectId(output);
    uint32_t applicationId = 17;

    interface.registerApplication("name", {}, applicationId);
    interface.unregisterApplication(17);
    interface.instantiateObject(17, CPPClassID(), objectId);
    interface.callMethod(17, CPPObjectID(), "method", CPPByteArray(), output);
    interface.deleteObject(17, objectId);
    interface.executeCommand(17, CPPByteArray(), CPPByteArray(), output);
    interface.getInformation(17, CPPByteArray(), output);

    EXPECT_EQ(applicationId, 17u);
    EXPECT_EQ(output.compare("as it was", 9), 0);
    EXPECT_EQ(objectId.compare("as it was", 9), 0);
}

}  // namespace
}  // namespace dovrel
