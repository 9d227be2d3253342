// The events that the server handles, and a function that sends one to the server itself.
#pragma once

#include "InterProcessCommunication/IPC_via_AE.h"

namespace merrowd {

struct EventKind {
    AEEventClass eventClass;
    AEEventID eventId;
};

constexpr EventKind kDataEvent{dovrel::serverEvent::kBufferClass, dovrel::serverEvent::kData};
constexpr EventKind kHandshakeEvent{dovrel::serverEvent::kBufferClass, dovrel::serverEvent::kWakeClient};
constexpr EventKind kQuitEvent{kCoreEventClass, kAEQuitApplication};

/// Control call: the direct parameter of the event and of its reply is a properties text.
constexpr EventKind kControlEvent{'DEVL', 'ctrl'};

/// The server sends it to itself to check whether its clients still run.
constexpr EventKind kTickEvent{'DEVL', 'tick'};

/// Sends an event without parameters to the server itself. Any thread; does not block. Returns false on failure.
bool sendToSelf(const EventKind& kind);

}  // namespace merrowd
