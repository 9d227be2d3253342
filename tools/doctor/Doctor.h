// dovrel doctor: examines an installation, and says what is wrong with it and what to do.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Adds the subcommand.
void addDoctor(CLI::App& app);

}  // namespace dovrel::tools
