// The library as a host has it: a bundle, loaded while the program runs, and its 13 functions.
#pragma once

#include <string>

#include "dovrel/pos.h"
#include "tests/support/LibraryImage.h"

namespace dovrel::test {

class PosLibrary {
  public:
    /// Loads the bundle, until the end of the object. Throws std::runtime_error where that is not possible;
    /// fails the test where a function is missing. The session is the test's own business.
    explicit PosLibrary(const std::string& bundle);
    bool isComplete() const { return complete_; }

    /// The code behind the functions.
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

}  // namespace dovrel::test
