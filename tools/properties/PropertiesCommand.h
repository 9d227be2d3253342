// dovrel properties: shows, changes, checks and converts properties texts and configuration files.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand with its own subcommands.
void addProperties(CLI::App& app);

}  // namespace dovrel::tools
