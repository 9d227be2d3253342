#include "InterProcessCommunication/POS_to_Client_Communicator.h"

#include <utility>

#include "InterProcessCommunication/POSTransferObj.h"

namespace dovrel {

POS_to_Client_Communicator::~POS_to_Client_Communicator() = default;

int32_t POS_to_Client_Communicator::ReceiveTransferObj(const AppleEvent* event,
                                                       POSTransferObj& object) const {
    CPPByteArray received;
    const int32_t error = GetData(event, received);
    if (received.getSize() != 0) object.adoptBytes(std::move(received));
    return error;
}

}  // namespace dovrel
