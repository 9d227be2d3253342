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
//
// For each step it writes a line: the status (hexadecimal), then the names of the libraries that were not in the process
// at its start.
#include <sys/resource.h>

#include <fstream>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "tests/support/PosLibrary.h"

namespace {

using dovrel::test::PosLibrary;

constexpr rlim_t kPage = 4096;
constexpr rlim_t kMoreMemory = 256 * 1024;

std::unique_ptr<PosLibrary> library;
uint32_t application = 0;

uint32_t ping() {
    char command[] = "ping";
    void* commandPointer = command;
    void* noArgument = nullptr;
    uint8_t* result = nullptr;
    uint32_t length = 0;
    const uint32_t status =
        library->posExecuteCMD(application, &commandPointer, 4, &noArgument, 0, &result, &length);
    library->posDeleteDLLHeapData(result);
    return status;
}

uint32_t callWithoutAName() {
    char identifier[POS_IDENTIFIER_SIZE] = {};
    void* object = identifier;
    uint8_t* result = nullptr;
    uint32_t length = 0;
    return library->posCallMethod(application, &object, nullptr, nullptr, 0, &result, &length);
}

uint32_t limitMemory() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit limit = {};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = pages * kPage + kMoreMemory;
    return static_cast<uint32_t>(setrlimit(RLIMIT_AS, &limit));
}

uint32_t carryOut(const std::string& step, const std::string& bundle) {
    if (step == "load") library = std::make_unique<PosLibrary>(bundle);
    if (step == "open") return library->InitializePOS();
    if (step == "register")
        return library->posRegisterApplicationWithClasses("Host", nullptr, 0, nullptr, 0, &application);
    if (step == "call") return ping();
    if (step == "fail") return callWithoutAName();
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

}  // namespace

int main(int, char** arguments) {
    const std::set<std::string> first = mappedLibraries();
    for (std::string step; std::getline(std::cin, step);) {
        std::cout << std::hex << carryOut(step, arguments[1]);
        for (const std::string& name : mappedLibraries())
            if (first.count(name) == 0) std::cout << ' ' << name;
        std::cout << std::endl;
    }
    return 0;
}
