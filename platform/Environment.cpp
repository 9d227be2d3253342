#include "platform/Environment.h"

#include <libc.h>

#include <atomic>
#include <cstdlib>

namespace dovrel {

namespace {

const char* systemVariable(const char* name) {
    return issetugid() != 0 ? nullptr : std::getenv(name);
}

std::atomic<EnvironmentSource> environmentSource{systemVariable};

}  // namespace

std::string environmentVariable(const char* name) {
    const char* const value = environmentSource.load()(name);
    return value != nullptr ? value : "";
}

void setEnvironmentSource(EnvironmentSource source) {
    environmentSource = source != nullptr ? source : systemVariable;
}

}  // namespace dovrel
