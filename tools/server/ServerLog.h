// dovrel server log: shows the log of the development server.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand to "dovrel server".
void addServerLog(CLI::App& server);

}  // namespace dovrel::tools
