// IPC_Info: the data of one exchange with the server, from the bytes to send to the object that is created
// from the reply.
//
// It owns both buffers and nothing else. It exists for one attempt to send; only one thread uses it.
#pragma once

#include <Carbon/Carbon.h>

#include <cstdint>
#include <memory>

#include "serialization/ByteBlock.h"

namespace dovrel {

class POSTransferObj;

class IPC_Info {
  public:
    IPC_Info() = default;
    IPC_Info(const IPC_Info&) = delete;
    IPC_Info& operator=(const IPC_Info&) = delete;
    virtual ~IPC_Info();

    /// Sets the descriptors of the running exchange. They are not owned and are valid only during the
    /// exchange. Null before the exchange.
    void setDescriptors(AppleEvent* event, AppleEvent* reply);
    AppleEvent* getEvent() const { return event_; }
    AppleEvent* getReply() const { return reply_; }

    /// Takes ownership of the buffer and releases the previous one.
    void setSendBuffer(std::unique_ptr<uint8_t[]> buffer, uint32_t size);
    const uint8_t* getSendBuffer() const { return sendBuffer_.get(); }
    uint32_t getSendSize() const { return sendSize_; }
    /// Returns the send buffer, which the caller owns from now on.
    ByteBlock takeSendBuffer();

    void setReceiveBuffer(std::unique_ptr<uint8_t[]> buffer, uint32_t size);
    const uint8_t* getReceiveBuffer() const { return receiveBuffer_.get(); }
    uint32_t getReceiveSize() const { return receiveSize_; }
    /// Returns the receive buffer, which the caller owns from now on.
    ByteBlock takeReceiveBuffer();

    /// Sets the object that was created from the received bytes. This record does not own it; the code that
    /// takes it out deletes it.
    void setReplyObject(POSTransferObj* replyObject) { replyObject_ = replyObject; }
    /// Returns the reply object and forgets it. Returns null if there is none.
    std::unique_ptr<POSTransferObj> takeReplyObject();

  private:
    AppleEvent* event_ = nullptr;
    AppleEvent* reply_ = nullptr;
    std::unique_ptr<uint8_t[]> sendBuffer_;
    std::unique_ptr<uint8_t[]> receiveBuffer_;
    uint32_t sendSize_ = 0;
    uint32_t receiveSize_ = 0;
    POSTransferObj* replyObject_ = nullptr;
};

}  // namespace dovrel
