#include "tests/support/PosLibrary.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace dovrel::test {

PosLibrary::PosLibrary(const std::string& bundle)
    : handle_(dlopen((bundle + "/Contents/MacOS/Dovrel").c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) {
        complete_ = false;
        ADD_FAILURE() << dlerror();
        return;
    }
    find(InitializePOS, "InitializePOS");
    find(TerminatePOS, "TerminatePOS");
    find(posRegisterApplicationWithClasses, "posRegisterApplicationWithClasses");
    find(posUnregisterApplication, "posUnregisterApplication");
    find(posInstantiateObject, "posInstantiateObject");
    find(posInstantiateObjectOnExecuter, "posInstantiateObjectOnExecuter");
    find(posCallMethod, "posCallMethod");
    find(posCallMethodOnExecuter, "posCallMethodOnExecuter");
    find(posDeleteObject, "posDeleteObject");
    find(posGetInfo, "posGetInfo");
    find(posExecuteCMD, "posExecuteCMD");
    find(posDeleteDLLHeapData, "posDeleteDLLHeapData");
    find(posFreeDllHeapData, "posFreeDllHeapData");
}

PosLibrary::~PosLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
}

template <typename Function>
void PosLibrary::find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(handle_, name));
    if (function != nullptr) return;
    complete_ = false;
    ADD_FAILURE() << "the bundle has no function " << name;
}

}  // namespace dovrel::test
