// dovrel call: calls a method of a new object.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand.
void addCall(CLI::App& app);

}  // namespace dovrel::tools
