#include "tools/Subcommand.h"

#include <CLI/CLI.hpp>
#include <sstream>

namespace dovrel::tools {

namespace {

std::string helpEnd(const std::string& examples, const std::string& notes) {
    std::string text = notes.empty() ? "Examples:\n" : notes + "\n\nExamples:\n";
    std::istringstream lines(examples);
    for (std::string line; std::getline(lines, line);)
        text += "  " + line + "\n";
    return text + "\nExit status: 0 success, 1 failure or troubles found, 2 wrong arguments";
}

}  // namespace

CLI::App& addSubcommand(CLI::App& parent, const std::string& name, const std::string& summary,
                        const std::string& examples, const std::string& notes) {
    CLI::App& subcommand = *parent.add_subcommand(name, summary);
    subcommand.footer(helpEnd(examples, notes));
    return subcommand;
}

CLI::Validator notEmpty() {
    return CLI::Validator(
        [](const std::string& value) { return std::string(value.empty() ? "the value is empty" : ""); }, "");
}

void addJsonOption(CLI::App& subcommand, bool& isJson) {
    subcommand.add_flag("--json", isJson, "Print JSON");
}

void exitFailed() {
    throw CLI::RuntimeError(kFailed);
}

void rejectArguments(const std::string& message) {
    throw CLI::ValidationError("", message);
}

}  // namespace dovrel::tools
