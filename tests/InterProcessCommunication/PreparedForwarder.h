// PreparedForwarder: a forwarder that returns the replies that a test has prepared as bytes, and counts which
// of them were deleted.
#pragma once

#include <string>

#include "tests/InterProcessCommunication/DeletionWatch.h"
#include "tests/support/library/ForwarderDouble.h"

namespace dovrel::test {

class PreparedForwarder : public ForwarderDouble {
  public:
    /// The client's process is kProcessIdentity.
    PreparedForwarder();

    /// Both set the reply to the next request: these bytes, or the block's header and these parts
    /// (in hexadecimal).
    void answerBytes(const CPPByteArray& bytes);
    void answerParts(const std::string& parts);
    /// Makes the next request throw a POSException with this text.
    void throwAtRequest(const char* text);
    /// Makes ConnectToPOS throw a POSException with this text.
    void throwAtConnect(const char* text);

    /// Count the replies that the caller has deleted, and those that still exist.
    int releasedAnswers() const { return answers_.deletions(); }
    int livingAnswers() const { return answers_.living(); }

  private:
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
