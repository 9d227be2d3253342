// dovrel texts: lists, prints and checks the texts for the user.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand with its own subcommands.
void addTexts(CLI::App& app);

}  // namespace dovrel::tools
