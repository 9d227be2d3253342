// A host that is linked with the library instead of loading it. It registers and writes the status.
#include <iostream>

#include "dovrel/pos.h"

int main() {
    InitializePOS();
    uint32_t application = 0;
    const uint32_t status = posRegisterApplicationWithClasses("Linked", nullptr, 0, nullptr, 0, &application);
    TerminatePOS();
    std::cerr << std::flush;
    std::cout << "status " << std::hex << status << std::endl;
    return 0;
}
