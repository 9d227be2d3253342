#include "tools/calls/Command.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/Subcommand.h"
#include "tools/calls/Operation.h"

namespace dovrel::tools {

namespace {

constexpr char kExamples[] =
    "dovrel command version\n"
    "dovrel command classes\n"
    "dovrel command ping \"some text\" --repeat 100\n"
    "dovrel command 0102 --hex-command 0A0B --hex";

struct Options {
    Operation operation;
    std::string command;
    bool isHexadecimal = false;
};

void run(const Options& options) {
    const std::string command = options.isHexadecimal ? parseHexadecimal(options.command) : options.command;
    options.operation.run([&](const pos::Session& session) -> Operation::Send {
        const std::string& name = options.operation.applicationName();
        const auto application = std::make_shared<pos::Application>(session, name.c_str());
        return [application, &command](pos::View bytes) { return application->run(command, bytes); };
    });
}

}  // namespace

void addCommand(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(app, "command", "Run a command in the server, and show its result",
                                         kExamples, kOperationNotes);
    const auto options = std::make_shared<Options>();
    subcommand.add_option("command", options->command, "The bytes of the command, as text")->required();
    subcommand.add_flag("--hex-command", options->isHexadecimal,
                        "The command consists of hexadecimal digits");
    options->operation.addOptions(subcommand, "argument", "The argument of the command, as text");
    subcommand.callback([options] { run(*options); });
}

}  // namespace dovrel::tools
