#include "InterProcessCommunication/IPC_Info.h"

#include <utility>

#include "InterProcessCommunication/POSTransferObj.h"

namespace dovrel {

IPC_Info::~IPC_Info() = default;

void IPC_Info::setDescriptors(AppleEvent* event, AppleEvent* reply) {
    event_ = event;
    reply_ = reply;
}

void IPC_Info::setSendBuffer(std::unique_ptr<uint8_t[]> buffer, uint32_t size) {
    sendBuffer_ = std::move(buffer);
    sendSize_ = size;
}

ByteBlock IPC_Info::takeSendBuffer() {
    return {std::move(sendBuffer_), std::exchange(sendSize_, 0)};
}

void IPC_Info::setReceiveBuffer(std::unique_ptr<uint8_t[]> buffer, uint32_t size) {
    receiveBuffer_ = std::move(buffer);
    receiveSize_ = size;
}

ByteBlock IPC_Info::takeReceiveBuffer() {
    return {std::move(receiveBuffer_), std::exchange(receiveSize_, 0)};
}

std::unique_ptr<POSTransferObj> IPC_Info::takeReplyObject() {
    return std::unique_ptr<POSTransferObj>(std::exchange(replyObject_, nullptr));
}

}  // namespace dovrel
