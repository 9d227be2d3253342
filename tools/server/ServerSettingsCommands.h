// dovrel server load, set and misbehave: they send settings to the running development server.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Each adds a subcommand to "dovrel server".
void addServerLoad(CLI::App& server);
void addServerSet(CLI::App& server);
void addServerMisbehave(CLI::App& server);

}  // namespace dovrel::tools
