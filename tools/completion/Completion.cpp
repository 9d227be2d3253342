#include "tools/completion/Completion.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "tools/Subcommand.h"
#include "tools/completion/BashCompletion.h"

namespace dovrel::tools {

namespace {

constexpr char kExamples[] =
    "source <(dovrel completion)   in ~/.bashrc, if the installation has no completion";

}  // namespace

void addCompletion(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "completion", "Print the script with which bash completes the arguments", kExamples);
    subcommand.callback([&app] { std::cout << bashCompletion(app); });
}

}  // namespace dovrel::tools
