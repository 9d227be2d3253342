// dovrel status: explains a number that an alert, a log or a trace shows.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand.
void addStatus(CLI::App& app);

}  // namespace dovrel::tools
