#include "InterProcessCommunication/POS_to_Client_Communicator.h"

#include "InterProcessCommunication/POSTransferObj.h"

namespace dovrel {

POS_to_Client_Communicator::~POS_to_Client_Communicator() = default;

int32_t POS_to_Client_Communicator::ReceiveTransferObj(const AppleEvent* event,
                                                       POSTransferObj& object) const {
    std::unique_ptr<uint8_t[]> buffer;
    uint32_t length = 0;
    const int32_t error = GetData(event, buffer, length);
    if (buffer) object.copyBytesFrom(buffer.get(), length);
    return error;
}

}  // namespace dovrel
