// Everything that a running server knows. Handed to whoever answers requests; the main thread alone touches
// it.
#pragma once

#include <cstdint>

#include "server/ApplicationTable.h"
#include "server/ClassRegistry.h"
#include "server/ServerSettings.h"

namespace merrowd {

struct ServerState {
    /// Registered applications are numbered from `firstApplication` on.
    explicit ServerState(uint32_t firstApplication) : applications(firstApplication) {}

    ServerSettings settings;
    ClassRegistry classes;
    ApplicationTable applications;
};

}  // namespace merrowd
