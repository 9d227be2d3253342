// dovrel report: prints the system report for the manufacturer's support.
#pragma once

#include <CLI/CLI.hpp>

namespace dovrel::tools {

/// Adds the subcommand.
void addReport(CLI::App& app);

}  // namespace dovrel::tools
