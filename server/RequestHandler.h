// Answers requests: bytes in, bytes out. The whole behaviour of a server that behaves; it knows nothing of
// how the bytes travel.
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>

#include "InterProcessCommunication/POSTransferObj.h"
#include "server/RequestFields.h"
#include "server/ServerState.h"

namespace merrowd {

using dovrel::POSTransferObj;

/// Header field 1 of a normal answer.
constexpr uint32_t kMessageKindAnswer = 11;

class RequestHandler {
  public:
    /// Takes a line for the log.
    using Note = std::function<void(const std::string& text)>;

    /// The state must outlive the handler. `note` is called for each exception that is not a Refusal.
    explicit RequestHandler(
        ServerState& state, Note note = [](const std::string&) {})
        : state_(state), note_(std::move(note)) {}

    /// Does what the request asks for and returns the reply, never null. The reply is an exception if that
    /// could not be done, or if the bytes are not a request. An exception that a class lets out is one with
    /// code 28, when an object is created one with code 26, anywhere else one with code 23. `sender` is the
    /// process that asks, 0 if it is not known. Throws std::bad_alloc only, for want of memory outside of a
    /// class.
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

    std::unique_ptr<POSTransferObj> performed(const CPPByteArray& request, pid_t sender, uint32_t& command);
    void perform(const RequestFields& request, pid_t sender, POSTransferObj& reply);

    ServerState& state_;
    const Note note_;
};

}  // namespace merrowd
