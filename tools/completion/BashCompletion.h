// Makes the completion script for bash.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Returns the script for a program with its subcommands and options. It completes subcommands, options and values
/// that are chosen from a list. For all other words bash completes file names.
std::string bashCompletion(const CLI::App& program);

}  // namespace dovrel::tools
