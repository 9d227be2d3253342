// The library as a host has it: a bundle, loaded while the program runs, and its 13 functions.
#pragma once

#include <string>

#include "dovrel/pos.h"

namespace dovrel::test {

class PosLibrary {
  public:
    /// Loads the bundle; fails the test where that or one of the functions is not to be had.
    explicit PosLibrary(const std::string& bundle);
    PosLibrary(const PosLibrary&) = delete;
    PosLibrary& operator=(const PosLibrary&) = delete;

    /// Gives the bundle up. The session is the test's own business.
    ~PosLibrary();

    bool isComplete() const { return complete_; }

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

    void* handle_ = nullptr;
    bool complete_ = true;
};

}  // namespace dovrel::test
