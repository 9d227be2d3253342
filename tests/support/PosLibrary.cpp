#include "tests/support/PosLibrary.h"

#include <gtest/gtest.h>

namespace dovrel::test {

PosLibrary::PosLibrary(const std::string& bundle) : image_(bundle + "/Contents/MacOS/Dovrel") {
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

template <typename Function>
void PosLibrary::find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(image_.function(name));
    if (function != nullptr) return;
    complete_ = false;
    ADD_FAILURE() << "the bundle has no function " << name;
}

}  // namespace dovrel::test
