// The order of the virtual functions, and the size of the platform's classes.
#include <gtest/gtest.h>

#include "platform/GeneralEvent.h"
#include "platform/SystemException.h"
#include "platform/random/BaseRandom.h"
#include "platform/synchronization/MacOSXCriticalSection.h"
#include "platform/synchronization/MacOSXMutex.h"
#include "platform/synchronization/MacOSXSynchronizationEvent.h"
#include "platform/trace/LogEntry.h"
#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

using test::virtualSlot;
using test::VirtualSlots;

// The destructor has the first two slots.
TEST(VirtualOrder, SynchronizationObjects_WaitThenTheirTwoOperations) {
    EXPECT_EQ(virtualSlot(&SynchronizationObject::wait), 2u);
    EXPECT_EQ(virtualSlot(&CriticalSection::enter), 3u);
    EXPECT_EQ(virtualSlot(&CriticalSection::leave), 4u);
    EXPECT_EQ(virtualSlot(&Mutex::lock), 3u);
    EXPECT_EQ(virtualSlot(&Mutex::unlock), 4u);
    EXPECT_EQ(virtualSlot(&SynchronizationEvent::signal), 3u);
    EXPECT_EQ(virtualSlot(&SynchronizationEvent::reset), 4u);
}

TEST(VirtualOrder, SynchronizationObjectsOfThePlatform_AddNoOperation) {
    EXPECT_EQ(VirtualSlots<MacOSXCriticalSection>::count(), 5u);
    EXPECT_EQ(VirtualSlots<MacOSXMutex>::count(), 5u);
    struct Event : MacOSXSynchronizationEvent {
        Event() : MacOSXSynchronizationEvent(true, false) {}
    };
    EXPECT_EQ(VirtualSlots<Event>::count(), 5u);
}

TEST(VirtualOrder, SynchronizationObjectsOfThePlatform_HoldAnIdentifierOnly) {
    EXPECT_EQ(sizeof(MacOSXCriticalSection), 2 * sizeof(void*));
    EXPECT_EQ(sizeof(MacOSXMutex), 2 * sizeof(void*));
    EXPECT_EQ(sizeof(MacOSXSynchronizationEvent), 2 * sizeof(void*));
}

TEST(VirtualOrder, SystemException_TypeCodeThenErrorCode) {
    EXPECT_EQ(virtualSlot(&SystemException::getTypeCode), virtualSlot(&CPPException::getTypeCode));
    EXPECT_EQ(virtualSlot(&SystemException::getErrorCode), virtualSlot(&CPPException::getTypeCode) + 1);
    EXPECT_EQ(virtualSlot(&SystemException::setErrorCode), virtualSlot(&CPPException::getTypeCode) + 2);
}

TEST(VirtualOrder, BaseRandom_SeedThenBitThenWord) {
    EXPECT_EQ(virtualSlot(&BaseRandom::seed), 2u);
    EXPECT_EQ(virtualSlot(&BaseRandom::nextBit), 3u);
    EXPECT_EQ(virtualSlot(&BaseRandom::next32), 4u);
}

TEST(VirtualOrder, GeneralEvent_EventKind) {
    EXPECT_EQ(virtualSlot(&GeneralEvent::eventKind), 2u);
}

TEST(VirtualOrder, LogEntry_DestructorOnly) {
    EXPECT_EQ(VirtualSlots<LogEntry>::count(), 2u);
}

}  // namespace
}  // namespace dovrel
