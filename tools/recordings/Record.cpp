#include "tools/recordings/Record.h"

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

// Standard output belongs to the command.
void printSummary(const std::string& file) {
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) {
        std::cerr << "dovrel: nothing was recorded: no host sent a request, or " << file
                  << " cannot be written\n";
        return;
    }
    std::vector<std::string> problems;
    const merrowd::Recording recording(file, problems);
    std::cerr << "dovrel: " << recording.exchanges().size() << " exchanges are recorded in " << file << "\n";
    for (const std::string& problem : problems)
        std::cerr << "dovrel: " << problem << "\n";
}

void record(const Options& options) {
    const std::string file = std::filesystem::absolute(options.file).lexically_normal();
    if (!options.appends && std::filesystem::exists(file))
        throw ToolFailure("there is already a file " + file + " (--append adds to it)");
    setenv(kRecordVariable, file.c_str(), 1);
    const int status = runChildCommand(options.command);
    printSummary(file);
    if (status != kSucceeded) throw CLI::RuntimeError(status);
}

}  // namespace

void addRecord(CLI::App& app) {
    CLI::App& subcommand =
        addSubcommand(app, "record", "Run a command and record what its host and the server say",
                      "dovrel record -- ./host\n"
                      "dovrel record -o trouble.recording -- ./host --verbose");
    const auto options = std::make_shared<Options>();
    subcommand.add_option("-o,--output", options->file, "The recording")->capture_default_str();
    subcommand.add_flag("--append", options->appends, "Add to a recording that exists");
    subcommand.add_option("COMMAND", options->command, "The command and its arguments, after --")->required();
    subcommand.callback([options] { record(*options); });
}

}  // namespace dovrel::tools
