// dovrel texts: lists, prints and checks the texts for the user.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand with its own subcommands.
void addTexts(CLI::App& app);

}  // namespace dovrel::tools
