// Another host: it prints "ready". Then, for each line on standard input, it opens a session, registers, executes a
// command, closes the session, and prints "served" or "not served".
#include <cstring>
#include <iostream>
#include <string>

#include "tests/support/PosLibrary.h"

namespace {

using dovrel::test::PosLibrary;

bool isServed(const PosLibrary& library) {
    uint32_t application = 0;
    if (library.posRegisterApplicationWithClasses("Neighbour", nullptr, 0, nullptr, 0, &application) !=
        POS_OK)
        return false;
    char command[] = "ping";
    void* pointer = command;
    uint8_t* result = nullptr;
    uint32_t length = 0;
    const uint32_t status = library.posExecuteCMD(application, &pointer, 4, &pointer, 4, &result, &length);
    const bool isRight = status == POS_OK && length == 4 && std::memcmp(result, command, 4) == 0;
    library.posDeleteDLLHeapData(result);
    return isRight;
}

}  // namespace

int main(int, char** arguments) {
    const PosLibrary library(arguments[1]);
    if (!library.isComplete()) return 2;
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        library.InitializePOS();
        const bool served = isServed(library);
        library.TerminatePOS();
        std::cout << (served ? "served" : "not served") << std::endl;
    }
}
