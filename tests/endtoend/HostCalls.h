// Calls that several hosts of the tests make.
#pragma once

#include "tests/support/PosLibrary.h"

namespace dovrel::test {

/// Executes a command that succeeds. Returns the status.
inline uint32_t ping(const PosLibrary& library, uint32_t application) {
    char command[] = "ping";
    void* commandPointer = command;
    void* noArgument = nullptr;
    uint8_t* result = nullptr;
    uint32_t length = 0;
    const uint32_t status =
        library.posExecuteCMD(application, &commandPointer, 4, &noArgument, 0, &result, &length);
    library.posDeleteDLLHeapData(result);
    return status;
}

/// Calls a method without its name, which fails and brings up an alert. Returns the status.
inline uint32_t callWithoutAName(const PosLibrary& library, uint32_t application) {
    char identifier[POS_IDENTIFIER_SIZE] = {};
    void* object = identifier;
    uint8_t* result = nullptr;
    uint32_t length = 0;
    return library.posCallMethod(application, &object, nullptr, nullptr, 0, &result, &length);
}

}  // namespace dovrel::test
