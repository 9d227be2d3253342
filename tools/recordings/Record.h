// dovrel record: runs a command whose host records its exchanges with the server.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand to the tool.
void addRecord(CLI::App& app);

}  // namespace dovrel::tools
