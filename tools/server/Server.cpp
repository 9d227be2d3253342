#include "tools/server/Server.h"

#include <CLI/CLI.hpp>

#include "tools/Subcommand.h"
#include "tools/server/ServerLife.h"
#include "tools/server/ServerLog.h"
#include "tools/server/ServerSettingsCommands.h"

namespace dovrel::tools {

void addServer(CLI::App& app) {
    CLI::App& server = addSubcommand(app, "server", "Start, end and control the server",
                                     "dovrel server start\n"
                                     "dovrel server set log 1\n"
                                     "dovrel server misbehave late --delay 2000\n"
                                     "dovrel server stop");
    server.require_subcommand(1);
    addServerStart(server);
    addServerStop(server);
    addServerStatus(server);
    addServerLoad(server);
    addServerSet(server);
    addServerMisbehave(server);
    addServerLog(server);
}

}  // namespace dovrel::tools
