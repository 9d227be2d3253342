// Answers requests: bytes in, bytes out. The whole behaviour of a server that behaves; it knows nothing of
// how the bytes travel.
#pragma once

#include <sys/types.h>

#include <memory>

#include "InterProcessCommunication/POSTransferObj.h"
#include "server/RequestFields.h"
#include "server/ServerState.h"

namespace merrowd {

using dovrel::POSTransferObj;

/// Header field 1 of a normal answer.
constexpr uint32_t kMessageKindAnswer = 11;

class RequestHandler {
  public:
    /// The state must outlive the handler.
    explicit RequestHandler(ServerState& state) : state_(state) {}

    /// Does what the request asks for. Always answers: what cannot be done, and what is no request at all, is
    /// answered by an exception. `sender` is the process that asks, 0 where that is not known. Only
    /// std::bad_alloc may come out.
    std::unique_ptr<POSTransferObj> answer(const CPPByteArray& request, pid_t sender);

    /// An exception answer. `command` is 0 where the request does not name a known one.
    static std::unique_ptr<POSTransferObj> exceptionAnswer(uint32_t command, const Refusal& refusal);

  private:
    // One per command; each writes the fields of its answer.
    void registerApplication(const RequestFields& request, pid_t sender, POSTransferObj& reply);
    void unregisterApplication(const RequestFields& request);
    void instantiateObject(const RequestFields& request, POSTransferObj& reply);
    void deleteObject(const RequestFields& request);
    void callMethod(const RequestFields& request, POSTransferObj& reply);
    void executeCommand(const RequestFields& request, POSTransferObj& reply);
    void getInformation(const RequestFields& request, POSTransferObj& reply);
    void queryInterfaceVersion(POSTransferObj& reply);

    void perform(const RequestFields& request, pid_t sender, POSTransferObj& reply);

    ServerState& state_;
};

}  // namespace merrowd
