// A host that uses the library in an exit handler that it registered before it loaded the library. At that
// time all exit handlers of the library have already run.
//
//     exitHost BUNDLE [fails]
//         registers an application; with "fails" makes a call that fails; writes "ready", waits for a line
//         and returns from main. The exit handler then calls a command and a method that fails, closes the
//         session, and writes the three results in one line.
#include <cstdio>
#include <cstdlib>

#include "tests/endtoend/HostCalls.h"

namespace {

// Never destroyed, as in a host that is written in C.
dovrel::test::PosLibrary* library = nullptr;
uint32_t application = 0;

void closeSession() {
    const uint32_t command = ping(*library, application);
    const uint32_t method = callWithoutAName(*library, application);
    const uint32_t end = library->TerminatePOS();
    std::printf("command %x, method %x, end %x\n", command, method, end);
    std::fflush(stdout);
}

}  // namespace

int main(int count, char** arguments) {
    std::atexit(closeSession);
    library = new dovrel::test::PosLibrary(arguments[1]);
    library->InitializePOS();
    if (library->posRegisterApplicationWithClasses("Leaving host", nullptr, 0, nullptr, 0, &application) !=
        POS_OK)
        std::_Exit(2);
    if (count > 2 && callWithoutAName(*library, application) != POS_FAILURE) std::_Exit(3);
    std::puts("ready");
    std::fflush(stdout);
    std::getchar();
    return 0;
}
