// PreparedForwarder: a forwarder that records its calls and returns the replies that a test has prepared.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "tests/InterProcessCommunication/DeletionWatch.h"

namespace dovrel::test {

class PreparedForwarder : public POSTransferObjForwarder {
  public:
    using Answer = std::function<POSTransferObj*()>;

    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;
    void ConnectToPOS(uint32_t hint) override;
    void CheckConnection() override;
    CPPByteArray GetClientProcessID() override;

    /// Both set the reply to the next request: these bytes, or the block's header and these parts
    /// (in hexadecimal).
    void answerBytes(const CPPByteArray& bytes);
    void answerParts(const std::string& parts);
    /// Makes the next request throw a POSException with this text.
    void throwAtRequest(const char* text);
    /// Makes ConnectToPOS throw a POSException with this text.
    void throwAtConnect(const char* text) { connectFailure_ = text; }

    /// Returns "connect 10", "check", "identify" and "forward" in the order of the calls.
    const std::vector<std::string>& calls() const { return calls_; }
    /// Returns the wire forms of the requests.
    const std::vector<CPPByteArray>& requests() const { return requests_; }

    /// Count the replies that the caller has deleted, and those that still exist.
    int releasedAnswers() const { return answers_.deletions(); }
    int livingAnswers() const { return answers_.living(); }

  private:
    std::vector<std::string> calls_;
    std::vector<CPPByteArray> requests_;
    std::deque<Answer> script_;
    const char* connectFailure_ = nullptr;
    DeletionWatch answers_;
};

/// The bytes 10 to 17, which represent the caller's process.
extern const char* const kProcessIdentity;

/// The parts of a normal reply's header (kind 1, message kind 11).
extern const char* const kNormalAnswer;

/// Returns the parts of a reply with this error code and text.
std::string exceptionAnswer(uint32_t code, const std::string& text);

/// Returns the part with this number and data, in hexadecimal.
std::string part(uint32_t number, const std::string& hexData);
std::string uint32Part(uint32_t number, uint32_t value);

}  // namespace dovrel::test
