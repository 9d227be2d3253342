// Shared by all end-to-end tests: an installation, the library in it, and short ways to use both.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/PosLibrary.h"
#include "tests/support/ServerControl.h"
#include "tests/support/ServerSettings.h"
#include "tests/support/ShippedTexts.h"
#include "tests/support/TestRoot.h"
#include "tests/support/WaitUntil.h"

namespace dovrel::test {

/// The status and the bytes that a call returned. The library's block has already been freed.
struct Answered {
    uint32_t status = POS_FAILURE;
    std::string bytes;
};

/// Owns an object's identifier for calls that take its handle, and frees it at the end.
class ObjectId {
  public:
    ObjectId(const PosLibrary& library, void* block) : library_(&library), block_(block) {}
    ObjectId(ObjectId&& other) noexcept : library_(other.library_), block_(other.block_) {
        other.block_ = nullptr;
    }
    ~ObjectId() { library_->posFreeDllHeapData(block_); }

    void** handle() { return &block_; }
    bool isThere() const { return block_ != nullptr; }
    std::string bytes() const { return {static_cast<const char*>(block_), POS_IDENTIFIER_SIZE}; }

  private:
    const PosLibrary* library_;
    void* block_;
};

/// A host: the library loaded into this process. Only one per process.
class Host {
  public:
    explicit Host(const TestRoot& root) : library_(root.library()) {}

    PosLibrary& library() { return library_; }

    /// Registers an application; `classes` are given by name. Returns the status.
    uint32_t registerApplication(uint32_t& application, const std::vector<std::string>& classes = {},
                                 std::vector<uint16_t> options = {}, const std::string& name = "End to end");

    /// Registers an application and returns its identifier; fails the test if registering fails.
    uint32_t registered(const std::vector<std::string>& classes = {});

    /// Returns a null identifier if the call failed.
    ObjectId instantiate(uint32_t application, const std::string& className);

    Answered call(uint32_t application, ObjectId& object, const char* method,
                  const std::string& argument = "");
    Answered command(uint32_t application, const std::string& command, const std::string& argument = "");
    Answered information(uint32_t application, const std::string& request);

  private:
    Answered taken(uint32_t status, uint8_t* bytes, uint32_t length);

    PosLibrary library_;
};

/// Captures standard error (which carries the system log) and standard output while it exists.
class Console {
  public:
    Console();
    ~Console();

    /// Ends the capture.
    void stop();
    const std::string& systemLog() const { return log_; }
    const std::string& output() const { return output_; }

  private:
    bool running_ = true;
    std::string log_;
    std::string output_;
};

class EndToEnd : public testing::Test {
  protected:
    /// Returns how many alerts with this body would have been shown.
    static size_t countAlerts(const Console& console, const std::string& body);
    /// Returns how many alerts would have been shown that report a failure to the application of `host_`.
    /// `explanation` is the text's key.
    size_t countFailures(const Console& console, const std::string& message,
                         const std::string& explanation) const;
    /// Returns how many alerts with any body would have been shown.
    static size_t alerts(const Console& console);

    /// Returns how often the text is in the server's log.
    size_t countInServerLog(const std::string& text) const;

    TestRoot root_;
    Host host_{root_};
    PosLibrary& library_ = host_.library();
    const ShippedTexts texts_{SHIPPED_TEXTS};
};

/// Opens the session before each test and closes it afterwards.
class InSession : public EndToEnd {
  protected:
    InSession() { library_.InitializePOS(); }
    ~InSession() override { library_.TerminatePOS(); }
};

size_t countOccurrences(const std::string& text, const std::string& part);

/// Returns the open file descriptors of this process.
std::vector<std::string> openDescriptors();

/// Returns the number in 4 bytes, least significant byte first.
std::string littleEndian(uint32_t number);

}  // namespace dovrel::test
