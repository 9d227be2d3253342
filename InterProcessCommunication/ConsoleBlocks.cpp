#include "InterProcessCommunication/ConsoleBlocks.h"

#include <cstdio>
#include <string>

namespace dovrel {

namespace {

void putDownloadLine(const char* beginning) {
    std::puts((std::string(beginning) + kDownloadAddress + " ").c_str());
}

}  // namespace

void printServerNotFound() {
    std::puts(" ");
    std::puts("============================================= ");
    std::puts(" Tessilor Runtime Error! ");
    std::puts(" Could not find Merrowd server application! ");
    std::puts(" Please download and install ");
    std::puts(" the latest version of ");
    std::puts(" the Tessilor Runtime software");
    putDownloadLine(" from ");
    std::puts("============================================= ");
    std::puts(" ");
}

void printLaunchFailure(int16_t error) {
    std::puts(" ");
    std::puts("=============================================== ");
    std::puts("  -- Tessilor Runtime Error -- ");
    std::puts(" Could not launch Merrowd server application! ");
    std::putchar('\n');
    std::printf("error: %d\n", error);
    std::putchar('\n');
    std::puts(" In case this problem persists, you might want ");
    std::puts(" to try one of the following before contacting ");
    std::puts(" your software vendor's support department: ");
    std::putchar('\n');
    std::puts(" - Manually quit the \"Merrowd\" process ");
    std::puts(" - Restart your computer ");
    std::puts(" - Download and install the latest version of ");
    std::puts("   the Tessilor Runtime software");
    putDownloadLine("   from ");
    std::puts("=============================================== ");
    std::puts(" ");
}

}  // namespace dovrel
