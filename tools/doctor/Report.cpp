#include "tools/doctor/Report.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "tools/Subcommand.h"
#include "tools/system/SystemFacts.h"

namespace dovrel::tools {

void addReport(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "report",
        "Print the system report for the manufacturer's support: the system and the installed versions",
        "dovrel report >report.txt");
    subcommand.callback([] { std::cout << makeSystemReport(); });
}

}  // namespace dovrel::tools
