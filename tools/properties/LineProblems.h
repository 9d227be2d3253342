// Prints the problems that a check found.
#pragma once

#include <string>
#include <vector>

#include "tools/properties/EntryList.h"

namespace dovrel::tools {

struct FileProblem {
    std::string file;
    LineProblem problem;  ///< the line is 0 if the problem has no line
};

/// Writes the problems to standard output, one on each line as "FILE:LINE: TEXT", or as JSON.
void printProblems(const std::vector<FileProblem>& problems, bool isJson);

}  // namespace dovrel::tools
