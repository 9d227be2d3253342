// dovrel: the command-line tool of the library. Each subcommand is a unit of its own.
#include <signal.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "client/exceptions/CPPException.h"
#include "tools/Subcommand.h"
#include "tools/calls/Call.h"
#include "tools/calls/Command.h"
#include "tools/calls/Info.h"
#include "tools/completion/Completion.h"
#include "tools/decode/Decode.h"
#include "tools/doctor/Doctor.h"
#include "tools/doctor/Report.h"
#include "tools/properties/PropertiesCommand.h"
#include "tools/recordings/Record.h"
#include "tools/recordings/Replay.h"
#include "tools/server/Server.h"
#include "tools/status/Status.h"
#include "tools/texts/TextsCommand.h"

namespace {

using namespace dovrel::tools;

// The help lists them in this order.
void addSubcommands(CLI::App& app) {
    addCall(app);
    addCommand(app);
    addInfo(app);
    addServer(app);
    addRecord(app);
    addReplay(app);
    addDoctor(app);
    addReport(app);
    addStatus(app);
    addDecode(app);
    addProperties(app);
    addTexts(app);
    addCompletion(app);
}

constexpr char kHelpEnd[] =
    "Exit status: 0 success, 1 failure or troubles found, 2 wrong arguments\n"
    "\"dovrel SUBCOMMAND --help\" shows the options and examples of a subcommand.\n"
    "POS_SYSTEM_ROOT selects the installation, POS_ALERTS=log keeps failures on standard error.\n"
    "Colours and progress appear on terminals only, and colours only without NO_COLOR.";

std::string oneLine(std::string text) {
    for (char& character : text)
        if (character == '\n' || character == '\r') character = ' ';
    return text;
}

int fail(const std::string& message) {
    std::cerr << "dovrel: " << oneLine(message) << '\n';
    return kFailed;
}

std::string describeWrongArguments(const CLI::App*, const CLI::Error& error) {
    const std::string message = error.what();
    return "dovrel: " + oneLine(message.substr(message.find_first_not_of(": "))) +
           " (--help lists the arguments)\n";
}

void configure(CLI::App& app) {
    app.name("dovrel");
    app.footer(kHelpEnd);
    app.set_version_flag("--version", "dovrel " DOVREL_VERSION);
    app.require_subcommand(1);
    app.failure_message(describeWrongArguments);
    addSubcommands(app);
}

int run(CLI::App& app, int count, char** arguments) {
    try {
        app.parse(count, arguments);
    } catch (const CLI::RuntimeError& end) {
        if (end.get_exit_code() != kSucceeded) return end.get_exit_code();
    } catch (const CLI::ParseError& error) {
        // Requests for help and for the version arrive here as well.
        if (app.exit(error) != kSucceeded) return kWrongArguments;
    }
    return std::cout.flush() ? kSucceeded : fail("cannot write to standard output");
}

}  // namespace

int main(int count, char** arguments) {
    // A program that ignores SIGCHLD passes that on, and then waitpid() does not report how a child ended.
    signal(SIGCHLD, SIG_DFL);
    try {
        CLI::App app("Tools for hosts, servers and installations of the Dovrel library.");
        configure(app);
        return run(app, count, arguments);
    } catch (dovrel::CPPException* caught) {
        const std::unique_ptr<dovrel::CPPException> failure(caught);
        const char* const message = failure->getMessage();
        return fail(message != nullptr ? message : "failed without a message");
    } catch (const std::exception& failure) {
        return fail(failure.what());
    }
}
