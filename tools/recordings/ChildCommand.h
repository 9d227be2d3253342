// Runs a command of the user and waits for its end.
#pragma once

#include <string>
#include <vector>

namespace dovrel::tools {

/// The text about the exit status in the help of the subcommands that run a command.
constexpr char kCommandStatusNotes[] =
    "After the command, the tool exits with the status of the command, or with 128 plus the number of the "
    "signal\n"
    "that ended it.";

/// Runs the command with the tool's environment and standard streams. Returns its exit status, or 128 and the
/// number of the signal that ended it, as a shell does. While it runs, SIGINT and SIGQUIT from the terminal end
/// only the command, unless they were ignored before. Throws a ToolFailure if it cannot be started. `command` has
/// at least one element.
int runChildCommand(const std::vector<std::string>& command);

}  // namespace dovrel::tools
