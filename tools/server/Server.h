// dovrel server: starts, ends and controls the server of this user and this system root.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand with its own subcommands.
void addServer(CLI::App& app);

}  // namespace dovrel::tools
