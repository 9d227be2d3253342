// A forwarder without a server: it replies to requests by a script, and records its calls.
#pragma once

#include <deque>
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

/// Commands are addressed by their constants, such as posCommand::kCallMethod.
class ForwarderDouble : public POSTransferObjForwarder {
  public:
    /// At first there are no replies.
    ForwarderDouble();
    ~ForwarderDouble() override;

    /// Sets the reply that the command gets from now on.
    void answer(uint32_t command, Answer answer) { always_[command] = std::move(answer); }

    /// Sets the reply of all commands that have no reply of their own.
    void answerAll(Answer answer) { otherwise_ = std::move(answer); }

    /// Sets replies for the next requests of the command, one each. After them the usual reply applies again.
    void answerNext(uint32_t command, std::vector<Answer> answers);

    /// Adds a reply for one request of any command. These replies come first, in their order.
    void answerNext(Answer answer) { nextOfAny_.push_back(std::move(answer)); }

    /// Fails the test if the script has no reply.
    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;
    void ConnectToPOS(uint32_t hint) override;
    void CheckConnection() override;
    CPPByteArray GetClientProcessID() override;

    /// Returns all calls in order: the names of the requests' commands ("call method"), "connect <hint>",
    /// "check", "identify", and "destroyed" if calls are watched.
    const std::vector<std::string>& calls() const { return *calls_; }
    std::shared_ptr<const std::vector<std::string>> watchCalls() const { return calls_; }
    size_t countOccurrences(const std::string& call) const;
    void forgetCalls() { calls_->clear(); }

    /// Returns the requests of the command, rebuilt from their bytes.
    std::vector<std::unique_ptr<POSTransferObj>> requests(uint32_t command) const;

    /// Returns the last request of the command, rebuilt from its bytes; null if there is none.
    std::unique_ptr<POSTransferObj> lastRequest(uint32_t command) const;

    CPPByteArray clientProcess;                           ///< returned by GetClientProcessID
    std::function<void()> onConnect;                      ///< called by ConnectToPOS
    std::function<void()> onRequest;                      ///< called by ForwardTransferObj first
    std::function<void(const POSTransferObj&)> onAnswer;  ///< called by ForwardTransferObj with each reply
    std::function<void()> onCheck;                        ///< called by CheckConnection

  private:
    struct Request {
        uint32_t command;
        CPPByteArray bytes;
    };

    Answer nextAnswer(uint32_t command);

    std::deque<Answer> nextOfAny_;
    std::map<uint32_t, std::deque<Answer>> next_;
    std::map<uint32_t, Answer> always_;
    Answer otherwise_;
    std::vector<Request> requests_;
    std::shared_ptr<std::vector<std::string>> calls_ = std::make_shared<std::vector<std::string>>();
};

}  // namespace dovrel::test
