#include "platform/GeneralEvent.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/SystemEventUnregApp.h"

namespace dovrel {
namespace {

TEST(GeneralEvent, EventKind_OfTheBase_IsZero) {
    EXPECT_EQ(GeneralEvent().eventKind(), 0u);
}

TEST(SystemEventUnregApp, EventKind_ThroughTheBase_IsOne) {
    const std::unique_ptr<GeneralEvent> event = std::make_unique<SystemEventUnregApp>(7);
    EXPECT_EQ(event->eventKind(), 1u);
}

TEST(SystemEventUnregApp, Value_IsTheOneGiven) {
    EXPECT_EQ(SystemEventUnregApp(0xFFFFFFFF).getValue(), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace dovrel
