// dovrel completion: prints the completion script for bash.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand. The script contains all subcommands of `app`, including those that are added later.
void addCompletion(CLI::App& app);

}  // namespace dovrel::tools
