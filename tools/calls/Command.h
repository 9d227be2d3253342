// dovrel command: runs a command in the server.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand.
void addCommand(CLI::App& app);

}  // namespace dovrel::tools
