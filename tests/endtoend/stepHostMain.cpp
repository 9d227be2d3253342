// A host that carries out steps and reports which libraries are in its process:
//
//     endtoend_step_host BUNDLE
//
// Each line of its input is a step:
//     load        loads the bundle
//     open        opens the session
//     register    registers an application
//     call        executes a command that succeeds
//     fail        makes a call that fails, which brings up an alert
//     limit       allows the process hardly more memory than it has
//     close       closes the session
//     leave       returns from main; an exit handler, registered before the bundle was loaded, makes a call that fails
//
// For each step it writes a line: the status (hexadecimal), then the names of the libraries that were not in
// the process at its start.
#include <sys/resource.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <set>
#include <string>

#include "tests/endtoend/HostCalls.h"

namespace {

using dovrel::test::PosLibrary;

constexpr rlim_t kPage = 4096;
constexpr rlim_t kMoreMemory = 256 * 1024;

// Never destroyed, because the exit handler uses it.
PosLibrary* library = nullptr;
uint32_t application = 0;
std::set<std::string> librariesAtFirst;
bool failsAtExit = false;

uint32_t limitMemory() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit limit = {};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = pages * kPage + kMoreMemory;
    return static_cast<uint32_t>(setrlimit(RLIMIT_AS, &limit));
}

uint32_t carryOut(const std::string& step, const std::string& bundle) {
    if (step == "load") library = new PosLibrary(bundle);
    if (step == "open") return library->InitializePOS();
    if (step == "register")
        return library->posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, 0, &application);
    if (step == "call") return ping(*library, application);
    if (step == "fail") return callWithoutAName(*library, application);
    if (step == "limit") return limitMemory();
    if (step == "close") return library->TerminatePOS();
    return 0;
}

// The names of the mapped files that are libraries or modules of a bundle.
std::set<std::string> mappedLibraries() {
    std::set<std::string> names;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        const size_t slash = line.rfind('/');
        if (slash == std::string::npos) continue;
        const std::string name = line.substr(slash + 1);
        if (name.find(".so") != std::string::npos || name.rfind("Dovrel", 0) == 0) names.insert(name);
    }
    return names;
}

void tell(uint32_t status) {
    std::cout << std::hex << status;
    for (const std::string& name : mappedLibraries())
        if (librariesAtFirst.count(name) == 0) std::cout << ' ' << name;
    std::cout << std::endl;
}

void failIfToldTo() {
    if (failsAtExit) tell(carryOut("fail", ""));
}

}  // namespace

int main(int, char** arguments) {
    std::atexit(failIfToldTo);
    librariesAtFirst = mappedLibraries();
    for (std::string step; std::getline(std::cin, step);) {
        failsAtExit = step == "leave";
        if (failsAtExit) break;
        tell(carryOut(step, arguments[1]));
    }
    return 0;
}
