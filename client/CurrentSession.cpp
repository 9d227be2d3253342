#include "client/CurrentSession.h"

#include <unistd.h>

#include <memory>
#include <string>

#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "InterProcessCommunication/RecordingForwarder.h"
#include "InterProcessCommunication/TracingForwarder.h"
#include "platform/files/Places.h"
#include "platform/synchronization/SynchronizationFactory.h"
#include "ui/alerts/MacOSXMessageDialog.h"
#include "ui/information/Component.h"

namespace dovrel {

namespace {

POSAccessUserInteraction* theSession = nullptr;

/// The forwarder of the current session. Must not be used if there is no session, because closeSession
/// does not reset it.
POSTransferObjForwarder* theForwarder = nullptr;

/// The process that opened the current session.
pid_t theOwner = 0;

}  // namespace

SessionParts platformParts() {
    return {
        [] { return traceIfRequested(recordIfRequested(std::make_unique<MacOSXTransferObjForwarder>())); },
        [] { return std::make_unique<MacOSXMessageDialog>(); }, createMutex};
}

void openSession(const SessionParts& parts) {
    if (theSession != nullptr) return;
    // Called for its side effect: it creates the log folder.
    errorLogPath();

    std::unique_ptr<POSTransferObjForwarder> forwarder = parts.createForwarder();
    auto session = std::make_unique<POSAccessUserInteraction>(parts);
    session->setForwarder(forwarder.get());
    session->useBundle(libraryComponent().path);
    theForwarder = forwarder.release();
    theSession = session.release();
    theOwner = getpid();
}

void closeSession() noexcept {
    theSession->shutDown();
    delete theForwarder;
    delete theSession;
    theSession = nullptr;
}

bool isSessionOfParent() noexcept {
    return theSession != nullptr && theOwner != getpid();
}

POSAccessUserInteraction* currentSession() noexcept {
    return theSession;
}

}  // namespace dovrel
