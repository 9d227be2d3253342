// SessionParts: the functions that create the parts of a session. A host's session uses the platform's parts;
// tests use their own.
#pragma once

#include <functional>
#include <memory>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "platform/synchronization/Mutex.h"
#include "ui/alerts/MessageDialog.h"

namespace dovrel {

/// Each function is called once per session. If one throws, the session is not created.
struct SessionParts {
    std::function<std::unique_ptr<POSTransferObjForwarder>()> createForwarder;
    std::function<std::unique_ptr<MessageDialog>()> createDialog;
    std::function<std::unique_ptr<Mutex>()> createLock;
};

}  // namespace dovrel
