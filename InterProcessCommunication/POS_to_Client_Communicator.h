// POS_to_Client_Communicator: the server's end of the Apple event channel.
#pragma once

#include "InterProcessCommunication/IPC_via_AE.h"

namespace dovrel {

class POSTransferObj;

class POS_to_Client_Communicator : public IPC_via_AE {
  public:
    POS_to_Client_Communicator() = default;
    ~POS_to_Client_Communicator() override;

    /// Makes `object` the one that the incoming event carries. An empty direct parameter leaves it as it is,
    /// and so does an error, which is returned: errAEDescNotFound for an event without a direct parameter.
    int32_t ReceiveTransferObj(const AppleEvent* event, POSTransferObj& object) const;
};

}  // namespace dovrel
