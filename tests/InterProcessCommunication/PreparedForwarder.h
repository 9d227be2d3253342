// PreparedForwarder: a carrier that notes what it is asked for and answers what a test has prepared.
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

    /// The next request is answered with these bytes, or with these parts behind the block's header
    /// (hexadecimal).
    void answerBytes(const CPPByteArray& bytes);
    void answerParts(const std::string& parts);
    /// The next request throws a POSException with this text.
    void throwAtRequest(const char* text);
    /// ConnectToPOS throws a POSException with this text.
    void throwAtConnect(const char* text) { connectFailure_ = text; }

    /// "connect 10", "check", "identify" and "forward", in the order of the calls.
    const std::vector<std::string>& calls() const { return calls_; }
    /// The wire forms of the requests.
    const std::vector<CPPByteArray>& requests() const { return requests_; }

    /// Answers that were handed out and deleted since; those that still live.
    int releasedAnswers() const { return answers_.deletions(); }
    int livingAnswers() const { return answers_.living(); }

  private:
    std::vector<std::string> calls_;
    std::vector<CPPByteArray> requests_;
    std::deque<Answer> script_;
    const char* connectFailure_ = nullptr;
    DeletionWatch answers_;
};

/// The bytes 10 to 17, which stand for the caller's process.
extern const char* const kProcessIdentity;

/// The parts of a normal answer's header (kind 1, message kind 11).
extern const char* const kNormalAnswer;

/// The parts of an answer with this error code and text.
std::string exceptionAnswer(uint32_t code, const std::string& text);

/// The part of this number with these data, in hexadecimal.
std::string part(uint32_t number, const std::string& hexData);
std::string uint32Part(uint32_t number, uint32_t value);

}  // namespace dovrel::test
