// dovrel command: runs a command in the server.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand.
void addCommand(CLI::App& app);

}  // namespace dovrel::tools
