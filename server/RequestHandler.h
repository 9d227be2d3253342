// RequestHandler: carries out requests and makes the replies. It implements the whole server except its
// misbehaviour, and does not know how the bytes are transported.
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

/// Header field 1 of a normal reply.
constexpr uint32_t kMessageKindReply = 11;

class RequestHandler {
  public:
    /// Writes a line to the log.
    using Note = std::function<void(const std::string& text)>;

    /// `state` must outlive the handler. `note` is called for each exception that is not a Refusal.
    explicit RequestHandler(
        ServerState& state, Note note = [](const std::string&) {})
        : state_(state), note_(std::move(note)) {}

    /// Carries out the request and returns the reply, never null, which may be in the memory of the request.
    /// The reply is an exception if the request could not be carried out or if the bytes are not a request.
    /// `sender` is the process that sent the request, 0 if it is not known.
    ///
    /// An exception other than Refusal becomes an exception reply: code 28 from a method, code 26 from the
    /// creation of an object, code 23 from all other code. Throws only std::bad_alloc, if memory runs out
    /// outside of the code of a class.
    std::unique_ptr<POSTransferObj> handle(CPPByteArray request, pid_t sender);

    /// Returns an exception reply. `command` is 0 if the request does not name a known command.
    static std::unique_ptr<POSTransferObj> makeExceptionReply(uint32_t command, const Refusal& refusal);

  private:
    using Reply = std::unique_ptr<POSTransferObj>;

    // One function per command. Each one returns its reply.
    Reply registerApplication(const RequestFields& request, pid_t sender);
    Reply unregisterApplication(const RequestFields& request);
    Reply instantiateObject(const RequestFields& request);
    Reply deleteObject(const RequestFields& request);
    Reply callMethod(RequestFields& request);
    Reply executeCommand(RequestFields& request);
    Reply getInformation(RequestFields& request);
    Reply queryInterfaceVersion();

    Reply performRequest(CPPByteArray& request, pid_t sender, uint32_t& command);
    Reply perform(RequestFields& request, pid_t sender);

    Caller makeCaller(uint32_t applicationId) const;

    ServerState& state_;
    const Note note_;
};

}  // namespace merrowd
