// What all end-to-end tests have: an installation, the library in it, and short ways to use both.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/PosLibrary.h"
#include "tests/support/ServerControl.h"
#include "tests/support/ShippedTexts.h"
#include "tests/support/TestRoot.h"
#include "tests/support/WaitUntil.h"

namespace dovrel::test {

/// What a call that answers bytes answered. The block of the library has been given back.
struct Answered {
    uint32_t status = POS_FAILURE;
    std::string bytes;
};

/// An object's identifier, kept for the calls that take its handle and given back at the end.
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

/// A host: the library in a process. One per process.
class Host {
  public:
    explicit Host(const TestRoot& root) : library_(root.library()) {}

    PosLibrary& library() { return library_; }

    /// Registers an application; `classes` by name. Answers the status.
    uint32_t registerApplication(uint32_t& application, const std::vector<std::string>& classes = {},
                                 std::vector<uint16_t> options = {}, const std::string& name = "End to end");

    /// The same; fails the test where it fails.
    uint32_t registered(const std::vector<std::string>& classes = {});

    /// Null identifier where the call failed.
    ObjectId instantiate(uint32_t application, const std::string& className);

    Answered call(uint32_t application, ObjectId& object, const char* method,
                  const std::string& argument = "");
    Answered command(uint32_t application, const std::string& command, const std::string& argument = "");
    Answered information(uint32_t application, const std::string& request);

  private:
    Answered taken(uint32_t status, uint8_t* bytes, uint32_t length);

    PosLibrary library_;
};

/// Runs the call and answers what it wrote to standard error (the system log) and standard output meanwhile.
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
    /// How often an alert with this body would have been shown.
    static size_t alertsOf(const Console& console, const std::string& body);
    /// How many alerts of any text.
    static size_t alerts(const Console& console);

    /// How often the text is in the server's log.
    size_t countInServerLog(const std::string& text) const;

    TestRoot root_;
    Host host_{root_};
    PosLibrary& library_ = host_.library();
    const ShippedTexts texts_{SHIPPED_TEXTS};
};

size_t countOf(const std::string& text, const std::string& part);

/// The file descriptors of this process that are open.
std::vector<std::string> openDescriptors();

/// 4 bytes, the least significant first.
std::string littleEndian(uint32_t number);

}  // namespace dovrel::test
