#include "portability/transport/EndpointSettings.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

#include "tests/support/Processes.h"

using namespace portability;

namespace {

std::string read(EndpointSettingsReader& reader) {
    const EndpointSettings settings = reader.read();
    return std::string(settings.systemRoot) + ' ' + settings.runtimeFolder;
}

}  // namespace

// In a process of its own, because the other tests need the environment.
TEST(EndpointSettings, EveryChangeOfTheEnvironment_TakesEffectAtOnce) {
    const int failedStep = inForkedProcess([] {
        EndpointSettingsReader reader;
        int step = 0;
        const auto expect = [&](const char* expected) { return ++step, read(reader) == expected; };
        unsetenv("POS_SYSTEM_ROOT");
        unsetenv("XDG_RUNTIME_DIR");
        if (!expect(" ")) return step;
        setenv("POS_SYSTEM_ROOT", "/root", 1);
        if (!expect("/root ")) return step;
        setenv("XDG_RUNTIME_DIR", "/run", 1);
        if (!expect("/root /run")) return step;
        setenv("POS_SYSTEM_ROOT", "/another root", 1);
        if (!expect("/another root /run")) return step;
        unsetenv("POS_SYSTEM_ROOT");
        if (!expect(" /run")) return step;
        char given[] = "POS_SYSTEM_ROOT=/given";
        putenv(given);
        if (!expect("/given /run")) return step;
        given[sizeof given - 2] = 'N';
        if (!expect("/giveN /run")) return step;
        unsetenv("XDG_RUNTIME_DIR");
        setenv("ANOTHER_VARIABLE", "value", 1);
        if (!expect("/giveN ")) return step;
        clearenv();
        if (!expect(" ")) return step;
        setenv("XDG_RUNTIME_DIR", "/new", 1);
        return expect(" /new") ? 0 : step;
    });
    EXPECT_EQ(failedStep, 0);
}
