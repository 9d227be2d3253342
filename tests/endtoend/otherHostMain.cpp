// The program of OtherHost. It reads commands of one character from standard input, and writes one character
// to standard output for each result.
#include <unistd.h>

#include <cstring>

#include "tests/support/PosLibrary.h"

namespace {

using dovrel::test::PosLibrary;

bool ping(const PosLibrary& library, uint32_t application) {
    char command[] = "pingme";
    void* commandPointer = command;
    void* argumentPointer = command + 4;
    uint8_t* result = nullptr;
    uint32_t length = 0;
    const uint32_t status =
        library.posExecuteCMD(application, &commandPointer, 4, &argumentPointer, 2, &result, &length);
    const bool right = status == POS_OK && length == 2 && std::memcmp(result, "me", 2) == 0;
    library.posDeleteDLLHeapData(result);
    return right;
}

void say(char word) {
    if (write(1, &word, 1) != 1) _exit(2);
}

}  // namespace

int main(int, char** argv) {
    const PosLibrary library(argv[1]);
    if (!library.isComplete()) return 2;
    library.InitializePOS();
    say('r');
    char word = 0;
    if (read(0, &word, 1) != 1) return 2;

    uint32_t application = 0;
    const bool registered = library.posRegisterApplicationWithClasses("Other host", nullptr, 0, nullptr, 0,
                                                                      &application) == POS_OK;
    const bool served = registered && ping(library, application);
    say(served ? '1' : '0');
    while (word == 's')
        pause();
    library.TerminatePOS();
    return served ? 0 : 1;
}
