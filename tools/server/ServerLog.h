// dovrel server log: shows the log of the development server.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand to "dovrel server".
void addServerLog(CLI::App& server);

}  // namespace dovrel::tools
