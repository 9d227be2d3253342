// dovrel replay: lets the development server play a recording back.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand to the tool.
void addReplay(CLI::App& app);

}  // namespace dovrel::tools
