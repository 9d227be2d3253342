// IPC_Info: the record of one exchange with the server, from the bytes to send to the object made of the
// answer.
//
// It owns both buffers and nothing else. Lives for one attempt; one thread.
#pragma once

#include <Carbon/Carbon.h>

#include <cstdint>
#include <memory>

namespace dovrel {

class POSTransferObj;

class IPC_Info {
  public:
    IPC_Info() = default;
    IPC_Info(const IPC_Info&) = delete;
    IPC_Info& operator=(const IPC_Info&) = delete;
    virtual ~IPC_Info();

    /// The descriptors of the running exchange; they live only as long as it does and are not owned. Null
    /// before it.
    void setDescriptors(AppleEvent* event, AppleEvent* reply);
    AppleEvent* getEvent() const { return event_; }
    AppleEvent* getReply() const { return reply_; }

    /// Takes the block over and releases the one before.
    void setSendBuffer(std::unique_ptr<uint8_t[]> buffer, uint32_t size);
    const uint8_t* getSendBuffer() const { return sendBuffer_.get(); }
    uint32_t getSendSize() const { return sendSize_; }

    void setReceiveBuffer(std::unique_ptr<uint8_t[]> buffer, uint32_t size);
    const uint8_t* getReceiveBuffer() const { return receiveBuffer_.get(); }
    uint32_t getReceiveSize() const { return receiveSize_; }

    /// The object made of the received bytes. The record does not own it: who takes it out deletes it.
    void setReplyObject(POSTransferObj* replyObject) { replyObject_ = replyObject; }
    /// Null when there is none (any more).
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
