#include "tools/recordings/Record.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "server/Recording.h"
#include "tools/Subcommand.h"
#include "tools/recordings/ChildCommand.h"

namespace dovrel::tools {

namespace {

constexpr char kDefaultFile[] = "dovrel.recording";
constexpr char kRecordVariable[] = "POS_RECORD";

struct Options {
    std::string file = kDefaultFile;
    bool appends = false;
    std::vector<std::string> command;
};

size_t countExchanges(const std::string& file, std::vector<std::string>& problems) {
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) return 0;
    return merrowd::Recording(file, problems).exchanges().size();
}

// Standard output belongs to the command.
void printSummary(const std::string& file, size_t countBefore) {
    std::vector<std::string> problems;
    const size_t count = countExchanges(file, problems);
    const size_t added = count - std::min(count, countBefore);
    if (added == 0) {
        std::cerr << "dovrel: nothing was " << (countBefore == 0 ? "recorded" : "added")
                  << ": no host sent a request, or " << file << " cannot be written\n";
    } else if (countBefore == 0) {
        std::cerr << "dovrel: " << count << " exchanges are recorded in " << file << "\n";
    } else {
        std::cerr << "dovrel: " << added << " exchanges were added; " << count << " are recorded in " << file
                  << "\n";
    }
    for (const std::string& problem : problems)
        std::cerr << "dovrel: " << problem << "\n";
}

void record(const Options& options) {
    const std::string file = std::filesystem::absolute(options.file);
    if (!options.appends && std::filesystem::exists(file))
        throw ToolFailure("there is already a file " + file + " (--append adds to it)");
    setenv(kRecordVariable, file.c_str(), 1);
    std::vector<std::string> ignored;
    const size_t countBefore = countExchanges(file, ignored);
    const int status = runChildCommand(options.command);
    printSummary(file, countBefore);
    if (status != kSucceeded) throw CLI::RuntimeError(status);
}

}  // namespace

void addRecord(CLI::App& app) {
    CLI::App& subcommand =
        addSubcommand(app, "record", "Run a command and record what its host and the server say",
                      "dovrel record -- ./host\n"
                      "dovrel record -o trouble.recording -- ./host --verbose",
                      kCommandStatusNotes);
    const auto options = std::make_shared<Options>();
    subcommand.add_option("-o,--output", options->file, "The recording")
        ->capture_default_str()
        ->check(notEmpty());
    subcommand.add_flag("--append", options->appends, "Add to a recording that exists");
    subcommand.add_option("COMMAND", options->command, "The command and its arguments, after --")->required();
    subcommand.callback([options] { record(*options); });
}

}  // namespace dovrel::tools
