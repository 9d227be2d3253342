// POS_to_Client_Communicator: the server's end of the Apple event channel.
#pragma once

#include "InterProcessCommunication/IPC_via_AE.h"

namespace dovrel {

class POSTransferObj;

class POS_to_Client_Communicator : public IPC_via_AE {
  public:
    POS_to_Client_Communicator() = default;
    ~POS_to_Client_Communicator() override;

    /// Replaces the content of `object` by the direct parameter of the event. An empty direct parameter
    /// leaves `object` unchanged. After an error, which is returned, `object` is also unchanged. Returns
    /// errAEDescNotFound if the event has no direct parameter.
    int32_t ReceiveTransferObj(const AppleEvent* event, POSTransferObj& object) const;
};

}  // namespace dovrel
