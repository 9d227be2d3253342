#include "client/ProcessSession.h"

#include <memory>
#include <string>

#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "InterProcessCommunication/TracingForwarder.h"
#include "client/VersionBanner.h"
#include "platform/files/LogPlaces.h"
#include "platform/synchronization/SynchronizationFactory.h"
#include "ui/alerts/MacOSXMessageDialog.h"
#include "ui/information/Component.h"

namespace dovrel {

namespace {

POSAccessUserInteraction* theSession = nullptr;

/// Belongs to the session that is there; without one it is not to be used, because closing does not clear it.
POSTransferObjForwarder* theForwarder = nullptr;

}  // namespace

SessionParts platformParts() {
    return {[] { return traceIfRequested(std::make_unique<MacOSXTransferObjForwarder>()); },
            [] { return std::make_unique<MacOSXMessageDialog>(); }, createMutex};
}

void openSession(const SessionParts& parts) {
    if (theSession != nullptr) return;
    const std::string bundlePath = libraryComponent().path;
    {
        // Not used any further: with the path the log's folder comes into being, at the first opening
        // already.
        const std::string logPath = errorLogPath();
        const std::string banner = versionBanner(bundlePath);
    }

    std::unique_ptr<POSTransferObjForwarder> forwarder = parts.createForwarder();
    auto session = std::make_unique<POSAccessUserInteraction>(parts);
    session->setForwarder(forwarder.get());
    session->setBundlePath(bundlePath);
    theForwarder = forwarder.release();
    theSession = session.release();
}

void closeSession() noexcept {
    theSession->shutDown();
    delete theForwarder;
    delete theSession;
    theSession = nullptr;
}

POSAccessUserInteraction* currentSession() noexcept {
    return theSession;
}

}  // namespace dovrel
