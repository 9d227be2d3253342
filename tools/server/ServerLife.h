// dovrel server start, stop and status.
#pragma once

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Asks the platform to launch the installed server, and does not wait until it answers. Throws a ToolFailure if no
/// server is installed, or if it cannot be launched.
void launchInstalledServer();

/// Launches the installed server if none runs, and waits until it answers. Throws a ToolFailure as above, or if it
/// does not answer. Returns whether it was running already.
bool ensureServerRuns();

/// Each adds a subcommand to "dovrel server".
void addServerStart(CLI::App& server);
void addServerStop(CLI::App& server);
void addServerStatus(CLI::App& server);

}  // namespace dovrel::tools
