// dovrel info: fetches information from the server.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand.
void addInfo(CLI::App& app);

}  // namespace dovrel::tools
