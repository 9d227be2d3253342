// dovrel report: prints the system report for the manufacturer's support.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand.
void addReport(CLI::App& app);

}  // namespace dovrel::tools
