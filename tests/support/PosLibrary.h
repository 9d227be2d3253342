// The library as a host sees it: a bundle that is loaded at run time, and its 13 functions.
#pragma once

#include <cstdint>
#include <string>

#include "dovrel/pos.h"
#include "tests/support/LibraryImage.h"

namespace dovrel::test {

class PosLibrary {
  public:
    /// Loads the bundle and keeps it loaded while the object exists. Throws std::runtime_error if that fails.
    /// Fails the test if a function is missing. Opening and closing the session is left to the test.
    explicit PosLibrary(const std::string& bundle);
    bool isComplete() const { return complete_; }

    /// Returns the loaded executable.
    const LibraryImage& image() const { return image_; }

    decltype(&::InitializePOS) InitializePOS = nullptr;
    decltype(&::TerminatePOS) TerminatePOS = nullptr;
    decltype(&::posRegisterApplicationWithClasses) posRegisterApplicationWithClasses = nullptr;
    decltype(&::posUnregisterApplication) posUnregisterApplication = nullptr;
    decltype(&::posInstantiateObject) posInstantiateObject = nullptr;
    decltype(&::posInstantiateObjectOnExecuter) posInstantiateObjectOnExecuter = nullptr;
    decltype(&::posCallMethod) posCallMethod = nullptr;
    decltype(&::posCallMethodOnExecuter) posCallMethodOnExecuter = nullptr;
    decltype(&::posDeleteObject) posDeleteObject = nullptr;
    decltype(&::posGetInfo) posGetInfo = nullptr;
    decltype(&::posExecuteCMD) posExecuteCMD = nullptr;
    decltype(&::posDeleteDLLHeapData) posDeleteDLLHeapData = nullptr;
    decltype(&::posFreeDllHeapData) posFreeDllHeapData = nullptr;

  private:
    template <typename Function>
    void find(Function& function, const char* name);

    LibraryImage image_;
    bool complete_ = true;
};

/// The identifier of the development server's class Echo, and the pointer to it that the functions take.
struct EchoClass {
    EchoClass() = default;
    EchoClass(const EchoClass&) = delete;
    EchoClass& operator=(const EchoClass&) = delete;

    char bytes[POS_IDENTIFIER_SIZE] = "Echo";
    void* pointer = bytes;
};

/// Returns the bytes of a text as the functions take them: through a pointer that is not const.
inline uint8_t* mutableBytes(std::string& text) {
    return reinterpret_cast<uint8_t*>(text.data());
}

}  // namespace dovrel::test
