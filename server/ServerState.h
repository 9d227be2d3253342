// ServerState: all data of a running server. Only the main thread uses it.
#pragma once

#include <cstdint>
#include <memory>

#include "server/ApplicationTable.h"
#include "server/ClassRegistry.h"
#include "server/Replay.h"
#include "server/ServerSettings.h"

namespace merrowd {

struct ServerState {
    /// The identifiers of registered applications begin with `firstApplication`.
    explicit ServerState(uint32_t firstApplication) : applications(firstApplication) {}

    ServerSettings settings;
    ClassRegistry classes;
    ApplicationTable applications;
    /// Null unless a recording is being replayed; then it handles all requests.
    std::unique_ptr<Replay> replay;
};

}  // namespace merrowd
