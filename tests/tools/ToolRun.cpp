#include "tests/tools/ToolRun.h"

#include <sys/wait.h>

#include <cstdlib>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

namespace {

std::string quoted(const std::string& word) {
    std::string text = "'";
    for (const char c : word)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

}  // namespace

ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input) {
    const TemporaryFolder folder;
    folder.write("input", input);
    std::string command = quoted(DOVREL_TOOL);
    for (const std::string& argument : arguments)
        command += " " + quoted(argument);
    command += " <" + quoted(folder.path("input")) + " >" + quoted(folder.path("output")) + " 2>" +
               quoted(folder.path("errors"));
    const int status = std::system(command.c_str());
    ToolRun run;
    if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
    run.output = folder.read("output");
    run.errors = folder.read("errors");
    return run;
}

}  // namespace dovrel::test
