// Fixtures for the client: a system root of the test's own with texts in it, and a session over scripted
// parts.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "client/ProcessSession.h"
#include "dovrel/pos.h"
#include "tests/client/ScriptedForwarder.h"
#include "tests/client/ScriptedMessageDialog.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

// Button sets of an alert.
constexpr int kOK = 0;
constexpr int kRetryCancel = 2;

/// The body of the alert that reports a failure, as the texts of SystemRootTest make it.
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

/// Every test has a system root, a home and texts of its own:
/// the explanations are "Stopped.", "Driver.", "Object." and "Register."; the other texts are those of the
/// constants.
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

    /// Registers under the name; fails the test when that fails.
    uint32_t registered(const char* name = "Host", std::vector<uint16_t> options = {},
                        std::vector<std::string> classes = {});

    // The session's own, as long as there is one.
    ScriptedForwarder* forwarder_ = nullptr;
    ScriptedMessageDialog* dialog_ = nullptr;
    SessionParts parts_;
};

}  // namespace dovrel::test
