// Reads and writes whole files for subcommands. "-" means standard input or standard output.
#pragma once

#include <string>

namespace dovrel::tools {

/// Returns all bytes of the file. Throws a ToolFailure that names the path, or "standard input", and the reason
/// if it cannot be opened or read, or if it is a folder.
std::string readInput(const std::string& path);

/// Creates the file or replaces its content. If the new content cannot be written completely, an existing file
/// keeps its old content (FileReplacement.h), and a ToolFailure names the path and the reason. The permissions of
/// an existing file stay. Devices and pipes are opened and written.
void writeOutput(const std::string& path, const std::string& content);

}  // namespace dovrel::tools
