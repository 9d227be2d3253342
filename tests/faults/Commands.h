// The commands of the protocol, for tests that try each of them.
#pragma once

#include <algorithm>
#include <ostream>
#include <string>

#include "tests/faults/FaultedHost.h"

namespace dovrel::test {

/// A command, and the call that sends it.
struct Command {
    const char* name;
    void (FaultedHost::*call)();
};

inline std::ostream& operator<<(std::ostream& stream, const Command& command) {
    return stream << command.name;
}

inline std::string toTestName(const Command& command) {
    std::string name = command.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

inline const Command kCommands[] = {
    {"query interface version", &FaultedHost::registerApplication},
    {"register application", &FaultedHost::registerApplication},
    {"unregister application", &FaultedHost::unregister},
    {"instantiate object", &FaultedHost::instantiate},
    {"call method", &FaultedHost::callMethod},
    {"delete object", &FaultedHost::deleteObject},
    {"get information", &FaultedHost::getInfo},
    {"execute command", &FaultedHost::executeCommand},
};

}  // namespace dovrel::test
