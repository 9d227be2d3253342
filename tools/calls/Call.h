// dovrel call: calls a method of a new object.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand.
void addCall(CLI::App& app);

}  // namespace dovrel::tools
