// The session of this process and the forwarder through which it sends. openSession creates both,
// closeSession destroys them.
//
// Neither function takes a lock. They must not overlap with each other or with an operation of the session.
#pragma once

#include "client/POSAccessUserInteraction.h"

namespace dovrel {

/// Returns the parts of a host's session: the Apple event forwarder (wrapped in forwarders that trace and
/// record, if POS_TRACE and POS_RECORD are set), real alerts and the platform's mutex.
SessionParts platformParts();

/// Opens the session. Sends nothing. If a session is already open, it stays as it is, with all its
/// registrations. Exceptions from creating the session pass through; then there is no session, and everything
/// that was created for it has been destroyed.
void openSession(const SessionParts& parts);

/// Unregisters the applications that are still registered, then destroys the forwarder and the session. Must
/// not be called without a session.
void closeSession() noexcept;

/// Returns whether the current session belongs to a process from which this one was forked. Such a session
/// must not be used, because its locks may be held by threads that do not exist in this process.
bool isSessionOfParent() noexcept;

/// Returns the session, or null before openSession and after closeSession.
POSAccessUserInteraction* currentSession() noexcept;

}  // namespace dovrel
