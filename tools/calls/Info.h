// dovrel info: fetches information from the server.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand.
void addInfo(CLI::App& app);

}  // namespace dovrel::tools
