#include "tests/faults/FaultedHost.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace dovrel::test {

namespace {

constexpr uint32_t kUntouched = 0xA5A5A5A5;
constexpr uint32_t kBlockSize = 100;

}  // namespace

FaultedHost::~FaultedHost() {
    leave();
    library_.posFreeDllHeapData(object_);
}

bool FaultedHost::settle() {
    if (!isOpen_) initialize();
    if (!isOpen_) return false;
    if (knowsObject()) return true;
    library_.posUnregisterApplication(application_);
    library_.posFreeDllHeapData(object_);
    object_ = nullptr;
    registerApplication();
    if (!takeProblem().empty() || !hasSucceeded()) return false;
    application_ = newApplication_;
    EchoClass echo;
    return library_.posInstantiateObject(application_, &echo.pointer, &object_) == POS_OK && knowsObject();
}

bool FaultedHost::knowsObject() {
    if (object_ == nullptr) return false;
    std::string argument = "hello";
    call("echo", argument);
    return takeProblem().empty() && hasSucceeded();
}

void FaultedHost::leave() {
    if (isOpen_) library_.TerminatePOS();
    isOpen_ = false;
}

// Before the call: what the outputs must be if it succeeds. Until then they contain garbage.
void FaultedHost::expect(Output output, const std::string& bytes) {
    output_ = output;
    expected_ = bytes;
    newApplication_ = kUntouched;
    newObject_ = this;
    result_ = reinterpret_cast<uint8_t*>(this);
    length_ = kUntouched;
}

template <typename Call>
void FaultedHost::make(Call call) {
    const std::function<void()> makeCall = [&] { status_ = call(); };
    const auto hook = std::exchange(hook_, nullptr);
    hook == nullptr ? makeCall() : hook(makeCall);
}

bool FaultedHost::isOutputRight() const {
    switch (output_) {
        case Output::none:
            return true;
        case Output::application:
            return newApplication_ != kUntouched;
        case Output::object:
            return newObject_ != this && newObject_ != nullptr;
        case Output::bytes:
            break;
    }
    return length_ == expected_.size() && std::memcmp(result_, expected_.data(), length_) == 0;
}

bool FaultedHost::isOutputCleared() const {
    switch (output_) {
        case Output::none:
            return true;
        case Output::application:
            return newApplication_ == kUntouched;
        case Output::object:
            return newObject_ == nullptr;
        case Output::bytes:
            break;
    }
    return result_ == nullptr && length_ == 0;
}

std::string FaultedHost::takeProblem() {
    if (status_ == POS_FAILURE) return isOutputCleared() ? "" : "failed, but the outputs are not cleared";
    if (status_ != POS_OK) return "an unknown result: " + std::to_string(status_);
    if (!isOutputRight()) return "succeeded with a wrong output";
    if (output_ == Output::object) library_.posFreeDllHeapData(newObject_);
    if (output_ == Output::bytes) library_.posDeleteDLLHeapData(result_);
    return "";
}

void FaultedHost::initialize() {
    expect(Output::none);
    hasLostException_ = false;
    status_ = POS_FAILURE;
    try {
        make([this] { return library_.InitializePOS(); });
    } catch (const std::bad_alloc&) {
    } catch (...) {
        hasLostException_ = true;
    }
    isOpen_ = status_ == POS_OK;
}

void FaultedHost::terminate() {
    expect(Output::none);
    make([&] { return library_.TerminatePOS(); });
    isOpen_ = false;
}

void FaultedHost::registerApplication() {
    EchoClass echo;
    expect(Output::application);
    make([&] {
        return library_.posRegisterApplicationWithClasses("Faults", &echo.pointer, 1, nullptr, 0,
                                                          &newApplication_);
    });
}

void FaultedHost::unregister() {
    expect(Output::none);
    make([&] { return library_.posUnregisterApplication(application_); });
}

void FaultedHost::instantiate() {
    EchoClass echo;
    expect(Output::object);
    make([&] { return library_.posInstantiateObject(application_, &echo.pointer, &newObject_); });
}

void FaultedHost::instantiateOnExecuter() {
    EchoClass echo;
    expect(Output::object);
    make([&] {
        return library_.posInstantiateObjectOnExecuter(application_, nullptr, &echo.pointer, &newObject_);
    });
}

void FaultedHost::call(const char* method, std::string& argument) {
    expect(Output::bytes, argument);
    make([&] {
        return library_.posCallMethod(application_, &object_, method, mutableBytes(argument),
                                      static_cast<uint32_t>(argument.size()), &result_, &length_);
    });
}

void FaultedHost::callMethod() {
    argument_ = "a small argument";
    call("echo", argument_);
}

void FaultedHost::callMethodOnExecuter() {
    argument_ = "a small argument";
    expect(Output::bytes, argument_);
    make([&] {
        return library_.posCallMethodOnExecuter(application_, nullptr, &object_, "echo",
                                                mutableBytes(argument_),
                                                static_cast<uint32_t>(argument_.size()), &result_, &length_);
    });
}

void FaultedHost::callMethodWithLargeData() {
    constexpr size_t kNeedsSharedMemory = 300'000;
    argument_.assign(kNeedsSharedMemory, 'x');
    call("echo", argument_);
}

void FaultedHost::callUnknownMethod() {
    argument_ = "a small argument";
    call("unknown", argument_);
}

void FaultedHost::deleteObject() {
    expect(Output::none);
    make([&] { return library_.posDeleteObject(application_, &object_); });
}

void FaultedHost::getInfo() {
    const uint8_t classes[] = {2, 0};
    expect(Output::bytes, "Clock\nCounter\nDigest\nEcho\nNotes\n");
    int32_t length = -1;
    make([&] { return library_.posGetInfo(application_, classes, sizeof classes, &result_, &length); });
    length_ = static_cast<uint32_t>(length);
}

void FaultedHost::executeCommand() {
    argument_ = "an argument";
    char command[] = "ping";
    void* commandPointer = command;
    void* argumentPointer = argument_.data();
    expect(Output::bytes, argument_);
    make([&] {
        return library_.posExecuteCMD(application_, &commandPointer, 4, &argumentPointer,
                                      static_cast<uint32_t>(argument_.size()), &result_, &length_);
    });
}

void FaultedHost::deleteHeapData() {
    expect(Output::none);
    auto* const block = new uint8_t[kBlockSize];
    make([&] { return library_.posDeleteDLLHeapData(block); });
}

void FaultedHost::freeHeapData() {
    expect(Output::none);
    void* const block = std::malloc(kBlockSize);
    make([&] { return library_.posFreeDllHeapData(block); });
}

}  // namespace dovrel::test
