// The session of this process and the forwarder that it sends through: made by openSession, ended by
// closeSession.
//
// Neither function takes a lock; they must not overlap with each other or with an operation of the session.
#pragma once

#include "client/POSAccessUserInteraction.h"
#include "client/SessionParts.h"

namespace dovrel {

/// The parts of a host's session: the Apple Event carrier (behind a trace where POS_TRACE asks for one), real
/// alerts, the platform's mutex.
SessionParts platformParts();

/// Makes the session; leaves one that is there, and all that it has registered, as it is. Sends nothing. What
/// the making throws passes; then there is no session, and nothing is left of it.
void openSession(const SessionParts& parts);

/// Unregisters what is still registered and destroys the forwarder, then the session. Needs a session.
void closeSession() noexcept;

/// Null before openSession and after closeSession.
POSAccessUserInteraction* currentSession() noexcept;

}  // namespace dovrel
