// The events that only this server knows, and a way for it to send one to itself.
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

/// New settings from outside: the direct parameter is a properties text, and so is the answer's.
constexpr EventKind kControlEvent{'DEVL', 'ctrl'};

/// Sent by the server to itself, to look after its clients.
constexpr EventKind kTickEvent{'DEVL', 'tick'};

/// Puts an event without parameters into the server's own queue. Any thread; waits for nobody. False when
/// that failed.
bool sendToSelf(const EventKind& kind);

}  // namespace merrowd
