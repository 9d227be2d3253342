// A forwarder without a server: it replies to every request by a script and records the requests.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"

namespace dovrel::test {

/// Makes the reply to a request, or throws the failure of the forwarder.
using Answer = std::function<std::unique_ptr<POSTransferObj>(POSTransferObj& request)>;

// Replies of the server. A message consists of flags and a text. Flags 0 with the text "" mean that
// there is no message.
Answer interfaceVersion(uint32_t version);
Answer registration(uint32_t applicationId, uint32_t flags = 0);
Answer nothing();
Answer object(const std::string& identifier, uint32_t messageFlags = 0, const std::string& text = "");
Answer result(const std::string& bytes, uint32_t messageFlags = 0, const std::string& text = "");
Answer information(const std::string& bytes);
Answer error(uint32_t code, const std::string& text);

class ScriptedForwarder : public POSTransferObjForwarder {
  public:
    /// Simulates a server that accepts everything. Applications get the identifiers 1, 2, 3 ...,
    /// objects the identifier "object", methods and commands the result "result", and requests for
    /// information the block "information".
    ScriptedForwarder();
    ~ScriptedForwarder() override;

    /// Sets the reply that the command gets from now on.
    void answer(uint32_t command, Answer answer) { always_[command] = std::move(answer); }

    /// Sets replies for the next requests of the command, one each. After them the usual reply applies again.
    void answerNext(uint32_t command, std::vector<Answer> answers);

    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;
    void ConnectToPOS(uint32_t hint) override;
    void CheckConnection() override;
    CPPByteArray GetClientProcessID() override;

    /// Returns all calls in order: the command's code, "connect <hint>", "check", and
    /// "destroyed" if calls are watched.
    const std::vector<std::string>& calls() const { return *calls_; }
    std::shared_ptr<const std::vector<std::string>> watchCalls() const { return calls_; }
    size_t countOf(const std::string& call) const;
    void forgetCalls() { calls_->clear(); }

    /// Returns the requests of the command, rebuilt from their bytes.
    std::vector<std::unique_ptr<POSTransferObj>> requests(uint32_t command) const;
    std::unique_ptr<POSTransferObj> lastRequest(uint32_t command) const;

    std::function<void()> onConnect;  ///< called by ConnectToPOS
    std::function<void()> onRequest;  ///< called by ForwardTransferObj first
    std::function<void()> onCheck;    ///< called by CheckConnection

  private:
    struct Request {
        uint32_t command;
        CPPByteArray bytes;
    };

    uint32_t nextApplicationId_ = 1;
    std::map<uint32_t, Answer> always_;
    std::map<uint32_t, std::vector<Answer>> next_;
    std::vector<Request> requests_;
    std::shared_ptr<std::vector<std::string>> calls_ = std::make_shared<std::vector<std::string>>();
};

}  // namespace dovrel::test
