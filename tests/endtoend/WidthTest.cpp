// Checks which widths (32 or 64 bits) the host and the server have.
#include <elf.h>

#include <cstdlib>
#include <fstream>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

class Width : public EndToEnd {};

// Reads the width from the ELF header of the process's program; returns 0 if that cannot be read.
int toBits(const std::string& process) {
    char header[EI_NIDENT] = {};
    std::ifstream("/proc/" + process + "/exe", std::ios::binary).read(header, sizeof header);
    if (header[EI_CLASS] == ELFCLASS64) return 64;
    return header[EI_CLASS] == ELFCLASS32 ? 32 : 0;
}

TEST_F(Width, OfTheServerThatAnswers_IsTheOneThatIsToBeMet) {
    library_.InitializePOS();
    const uint32_t application = host_.registered();
    // Makes more than one call, because the shared memory of host and server grows with the first calls. Uses
    // small and large data, because they are transferred in different ways.
    for (const size_t length : {0u, 1u, 100u, 20000u, 3000000u}) {
        const std::string data(length, 'w');
        EXPECT_EQ(host_.command(application, "ping", data).bytes, data);
    }

    const std::vector<pid_t> servers = root_.waitForServers(1);
    ASSERT_EQ(servers.size(), 1u);
    const char* const toBeMet = getenv("DOVREL_TEST_SERVER_BITS");
    EXPECT_EQ(toBits("self"), static_cast<int>(8 * sizeof(void*)));
    EXPECT_EQ(toBits(std::to_string(servers[0])), toBeMet == nullptr ? toBits("self") : std::atoi(toBeMet));
    library_.TerminatePOS();
}

}  // namespace
}  // namespace dovrel::test
