// What a session is made of. The platform's parts are the ones of a host's session; tests put in their own.
#pragma once

#include <functional>
#include <memory>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "platform/synchronization/Mutex.h"
#include "ui/alerts/MessageDialog.h"

namespace dovrel {

/// Each is called once for a session. What they throw ends the making of the session.
struct SessionParts {
    std::function<std::unique_ptr<POSTransferObjForwarder>()> createForwarder;
    std::function<std::unique_ptr<MessageDialog>()> createDialog;
    std::function<std::unique_ptr<Mutex>()> createLock;
};

}  // namespace dovrel
