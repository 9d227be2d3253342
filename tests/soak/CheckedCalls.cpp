#include "tests/soak/CheckedCalls.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

namespace dovrel::test {

namespace {

constexpr uint32_t kUntouched = 0xA5A5A5A5;

}  // namespace

CheckedCalls::CheckedCalls(const PosLibrary& library, std::string name, uint32_t seed)
    : library_(library), name_(std::move(name)), random_(seed) {}

CheckedCalls::~CheckedCalls() {
    forgetObject();
}

void CheckedCalls::next() {
    if (!isRegistered_) {
        isRegistered_ = count(&CheckedCalls::registerApplication);
        return;
    }
    if (object_ == nullptr) {
        // If the call fails, the reason may be a new server that does not know the application.
        isRegistered_ = count(&CheckedCalls::instantiate);
        return;
    }
    const auto kind = random_() % 100;
    if (kind < 70) {
        if (!count(&CheckedCalls::callMethod)) forgetObject();
    } else if (kind < 85) {
        if (!count(&CheckedCalls::executeCommand)) forgetObject();
    } else if (kind < 90) {
        count(&CheckedCalls::getInfo);
    } else {
        if (kind < 97) {
            count(&CheckedCalls::deleteObject);
        } else {
            count(&CheckedCalls::unregisterApplication);
            isRegistered_ = false;
        }
        forgetObject();
    }
}

// Returns whether the call succeeded with the right output.
bool CheckedCalls::count(Ending (CheckedCalls::*call)()) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    const Ending ending = (this->*call)();
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    report_.longest = std::max(report_.longest, static_cast<uint64_t>(taken.count()));
    switch (ending) {
        case Ending::right:
            ++report_.right;
            return true;
        case Ending::failed:
            ++report_.failed;
            return false;
        case Ending::wrong:
            break;
    }
    ++report_.wrong;
    return false;
}

CheckedCalls::Ending CheckedCalls::endingFromStatus(uint32_t status, bool isRight, bool isCleared) {
    if (status == POS_OK) return isRight ? Ending::right : Ending::wrong;
    return status == POS_FAILURE && isCleared ? Ending::failed : Ending::wrong;
}

CheckedCalls::Ending CheckedCalls::registerApplication() {
    EchoClass echo;
    application_ = kUntouched;
    const uint32_t status = library_.posRegisterApplicationWithClasses(name_.c_str(), &echo.pointer, 1,
                                                                       nullptr, 0, &application_);
    return endingFromStatus(status, application_ != kUntouched, application_ == kUntouched);
}

CheckedCalls::Ending CheckedCalls::unregisterApplication() {
    return endingFromStatus(library_.posUnregisterApplication(application_), true, true);
}

CheckedCalls::Ending CheckedCalls::instantiate() {
    EchoClass echo;
    object_ = this;
    const uint32_t status = library_.posInstantiateObject(application_, &echo.pointer, &object_);
    if (object_ == this) {
        object_ = nullptr;
        return Ending::wrong;
    }
    return endingFromStatus(status, object_ != nullptr, object_ == nullptr);
}

CheckedCalls::Ending CheckedCalls::deleteObject() {
    return endingFromStatus(library_.posDeleteObject(application_, &object_), true, true);
}

CheckedCalls::Ending CheckedCalls::callMethod() {
    std::string argument = makeArgument();
    uint8_t* result = mutableBytes(argument);
    uint32_t length = kUntouched;
    const uint32_t status = library_.posCallMethod(application_, &object_, "echo", mutableBytes(argument),
                                                   static_cast<uint32_t>(argument.size()), &result, &length);
    return takeOutput(status, result, length, argument);
}

CheckedCalls::Ending CheckedCalls::executeCommand() {
    std::string argument = makeArgument();
    char command[] = "ping";
    void* commandPointer = command;
    void* argumentPointer = argument.data();
    uint8_t* result = mutableBytes(argument);
    uint32_t length = kUntouched;
    const uint32_t status = library_.posExecuteCMD(application_, &commandPointer, 4, &argumentPointer,
                                                   static_cast<uint32_t>(argument.size()), &result, &length);
    return takeOutput(status, result, length, argument);
}

CheckedCalls::Ending CheckedCalls::getInfo() {
    const uint8_t classes[] = {2, 0};
    std::string expected = "Clock\nCounter\nDigest\nEcho\nNotes\n";
    uint8_t* result = mutableBytes(expected);
    int32_t length = -1;
    const uint32_t status = library_.posGetInfo(application_, classes, sizeof classes, &result, &length);
    return takeOutput(status, result, static_cast<uint32_t>(length), expected);
}

CheckedCalls::Ending CheckedCalls::takeOutput(uint32_t status, uint8_t* result, uint32_t length,
                                              const std::string& expected) {
    if (status != POS_OK) return endingFromStatus(status, false, result == nullptr && length == 0);
    const bool isRight = length == expected.size() && std::memcmp(result, expected.data(), length) == 0;
    library_.posDeleteDLLHeapData(result);
    return endingFromStatus(status, isRight, false);
}

void CheckedCalls::forgetObject() {
    library_.posFreeDllHeapData(object_);
    object_ = nullptr;
}

// Usually short. Sometimes it needs shared memory.
std::string CheckedCalls::makeArgument() {
    const auto kind = random_() % 100;
    const size_t most = kind < 90 ? 300 : kind < 99 ? 20'000 : 300'000;
    std::string argument = name_ + ' ' + std::to_string(report_.calls()) + ' ';
    argument.append(random_() % most, static_cast<char>('a' + random_() % 26));
    return argument;
}

}  // namespace dovrel::test
