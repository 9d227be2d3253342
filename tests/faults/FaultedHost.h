// FaultedHost: a host with one application and one object, and the calls into which faults are put.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tests/support/PosLibrary.h"

namespace dovrel::test {

class FaultedHost {
  public:
    explicit FaultedHost(const std::string& bundle) : library_(bundle) {}
    FaultedHost(const FaultedHost&) = delete;
    FaultedHost& operator=(const FaultedHost&) = delete;
    ~FaultedHost();

    /// Opens the session if it is closed. Registers and creates the object anew if the server does not know the
    /// object. Returns false if anything fails.
    bool settle();

    /// Calls a method of the object. Returns whether the call succeeded with the right result.
    bool knowsObject();

    /// Closes the session if it is open.
    void leave();

    /// The next call of those below is made through `hook`, which has to run its argument. The code of this class
    /// around the call does not run inside the hook.
    void makeNextCallThrough(std::function<void(const std::function<void()>&)> hook) {
        hook_ = std::move(hook);
    }

    // Each makes one call, and keeps its status and outputs.
    void initialize();
    void terminate();
    void registerApplication();
    void unregister();
    void instantiate();
    void instantiateOnExecuter();
    void callMethod();
    void callMethodOnExecuter();
    void callMethodWithLargeData();
    void callUnknownMethod();
    void deleteObject();
    void getInfo();
    void executeCommand();
    void deleteHeapData();
    void freeHeapData();

    /// Returns whether the last call succeeded.
    bool hasSucceeded() const { return status_ == POS_OK; }

    /// Returns what is wrong with the status and the outputs of the last call; "" if they are as pos.h says. Frees
    /// the outputs.
    std::string takeProblem();

    /// Returns whether the last call was InitializePOS and threw an exception that a host cannot free.
    bool hasLostException() const { return hasLostException_; }

  private:
    enum class Output { none, application, object, bytes };

    void expect(Output output, const std::string& bytes = "");
    template <typename Call>
    void make(Call call);
    void call(const char* method, std::string& argument);
    bool isOutputRight() const;
    bool isOutputCleared() const;

    PosLibrary library_;
    std::function<void(const std::function<void()>&)> hook_;
    bool isOpen_ = false;
    bool hasLostException_ = false;
    uint32_t application_ = 0;
    void* object_ = nullptr;

    // The last call.
    uint32_t status_ = POS_OK;
    Output output_ = Output::none;
    std::string expected_;
    std::string argument_;
    uint32_t newApplication_ = 0;
    void* newObject_ = nullptr;
    uint8_t* result_ = nullptr;
    uint32_t length_ = 0;
};

}  // namespace dovrel::test
