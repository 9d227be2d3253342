// POS_to_Client_Communicator: the server's end of the Apple event channel.
#pragma once

#include "InterProcessCommunication/IPC_via_AE.h"

namespace dovrel {

class POSTransferObj;

class POS_to_Client_Communicator : public IPC_via_AE {
  public:
    POS_to_Client_Communicator() = default;
    ~POS_to_Client_Communicator() override;

    /// Replaces the content of `object` by the direct parameter of the event, and returns 0. If the parameter
    /// is empty, returns 0 and leaves `object` unchanged. Otherwise returns the platform's error and leaves
    /// `object` unchanged; errAEDescNotFound means that the event has no direct parameter.
    int32_t ReceiveTransferObj(const AppleEvent* event, POSTransferObj& object) const;
};

}  // namespace dovrel
