// dovrel replay: lets the development server play a recording back.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand to the tool.
void addReplay(CLI::App& app);

}  // namespace dovrel::tools
