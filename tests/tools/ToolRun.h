// Runs the command-line tool to its end.
#pragma once

#include <string>
#include <vector>

namespace dovrel::test {

struct ToolRun {
    int status = -1;  ///< the exit status; -1 if a signal ended the tool
    std::string output;
    std::string errors;
};

/// Runs the tool with the arguments after its name, and with `input` as its standard input.
ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input = "");

}  // namespace dovrel::test
