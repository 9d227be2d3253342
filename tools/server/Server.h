// dovrel server: starts, ends and controls the server of this user and this system root.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand with its own subcommands.
void addServer(CLI::App& app);

}  // namespace dovrel::tools
