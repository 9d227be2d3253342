// The calls into which faults are put, each in the situations in which it does different things.
#pragma once

#include <ostream>
#include <vector>

#include "tests/faults/FaultedHost.h"

namespace dovrel::test {

struct Situation {
    enum class Before { settled, closed, serverGone };

    const char* name;  ///< begins with the exported function
    void (FaultedHost::*call)();
    Before before;
    bool succeeds;         ///< whether the call succeeds without a fault
    bool removes = false;  ///< whether the application or its object are gone after the call
};

inline std::ostream& operator<<(std::ostream& stream, const Situation& situation) {
    return stream << situation.name;
}

inline std::vector<Situation> allSituations() {
    using Before = Situation::Before;
    using Host = FaultedHost;
    return {
        {"InitializePOS", &Host::initialize, Before::closed, true},
        {"TerminatePOS", &Host::terminate, Before::settled, true, true},
        {"TerminatePOS_ServerGone", &Host::terminate, Before::serverGone, true},
        {"posRegisterApplicationWithClasses", &Host::registerApplication, Before::settled, true},
        {"posRegisterApplicationWithClasses_ServerGone", &Host::registerApplication, Before::serverGone,
         true},
        {"posUnregisterApplication", &Host::unregister, Before::settled, true, true},
        {"posUnregisterApplication_ServerGone", &Host::unregister, Before::serverGone, false},
        {"posInstantiateObject", &Host::instantiate, Before::settled, true},
        {"posInstantiateObject_ServerGone", &Host::instantiate, Before::serverGone, false},
        {"posInstantiateObjectOnExecuter", &Host::instantiateOnExecuter, Before::settled, true},
        {"posInstantiateObjectOnExecuter_ServerGone", &Host::instantiateOnExecuter, Before::serverGone,
         false},
        {"posCallMethod", &Host::callMethod, Before::settled, true},
        {"posCallMethod_LargeData", &Host::callMethodWithLargeData, Before::settled, true},
        {"posCallMethod_Refused", &Host::callUnknownMethod, Before::settled, false},
        {"posCallMethod_ServerGone", &Host::callMethod, Before::serverGone, false},
        {"posCallMethodOnExecuter", &Host::callMethodOnExecuter, Before::settled, true},
        {"posCallMethodOnExecuter_ServerGone", &Host::callMethodOnExecuter, Before::serverGone, false},
        {"posDeleteObject", &Host::deleteObject, Before::settled, true, true},
        {"posDeleteObject_ServerGone", &Host::deleteObject, Before::serverGone, false},
        {"posGetInfo", &Host::getInfo, Before::settled, true},
        {"posGetInfo_ServerGone", &Host::getInfo, Before::serverGone, true},
        {"posExecuteCMD", &Host::executeCommand, Before::settled, true},
        {"posExecuteCMD_ServerGone", &Host::executeCommand, Before::serverGone, false},
        {"posDeleteDLLHeapData", &Host::deleteHeapData, Before::settled, true},
        {"posFreeDllHeapData", &Host::freeHeapData, Before::settled, true},
    };
}

}  // namespace dovrel::test
