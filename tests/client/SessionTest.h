// Fixtures for the client: a system root with texts that belongs to the test,
// and a session over scripted parts.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "client/CurrentSession.h"
#include "dovrel/pos.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/library/AcceptingForwarder.h"
#include "tests/support/library/ScriptedMessageDialog.h"

namespace dovrel::test {

// Button sets of an alert.
constexpr int kOK = 0;
constexpr int kRetryCancel = 2;

/// Returns the body of the alert that reports a failure, made with the texts of SystemRootTest.
std::string reportBody(const std::string& application, const std::string& message,
                       const std::string& explanation);

/// 16 bytes that begin with the name.
class Identifier {
  public:
    explicit Identifier(const std::string& name);
    void* bytes() { return bytes_; }

  private:
    char bytes_[16] = {};
};

/// Gives every test its own system root, home folder and texts. The explanations are "Stopped.", "Driver.",
/// "Object." and "Register."; the other texts are the constants below.
class SystemRootTest : public testing::Test {
  protected:
    static constexpr char kTexts[] =
        "Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/"
        "MultiLanguageTexts.mls";
    static constexpr char kErrorLogFile[] = "Library/Logs/Tessilor/POSDLLErrorLog.txt";
    static constexpr char kErrorTitle[] = "Failure";
    static constexpr char kMessageTitle[] = "News";
    static constexpr char kAttention[] = "Really not?";
    static constexpr char kUnknown[] = "Nobody knows.";
    static constexpr char kClassMissing[] = "No such class here.";
    static constexpr char kNullPointer[] = "Null was passed.";
    static constexpr char kWrongInterface[] = "Another interface.";

    SystemRootTest();

    TemporaryFolder root_;
};

class SessionTest : public SystemRootTest {
  protected:
    SessionTest();
    ~SessionTest() override;

    /// Registers under the name and returns the identifier; fails the test if that fails.
    uint32_t registered(const char* name = "Host", std::vector<uint16_t> options = {},
                        std::vector<std::string> classes = {});

    // Owned by the session; valid while the session exists.
    AcceptingForwarder* forwarder_ = nullptr;
    ScriptedMessageDialog* dialog_ = nullptr;
    SessionParts parts_;
};

}  // namespace dovrel::test
