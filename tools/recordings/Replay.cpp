#include "tools/recordings/Replay.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/exceptions/CPPException.h"
#include "server/ImportedClasses.h"
#include "server/Recording.h"
#include "settings/LineGrammar.h"
#include "tools/Subcommand.h"
#include "tools/recordings/ChildCommand.h"
#include "tools/server/ServerChannel.h"
#include "tools/server/ServerLife.h"

namespace dovrel::tools {

namespace {

// The server reads the requests of the recording before it replies.
constexpr std::chrono::seconds kTimeOut{60};

struct Options {
    std::string file;
    bool isStrict = false;
    bool printsClasses = false;
    std::vector<std::string> command;
};

void reportProblems(const std::vector<std::string>& problems) {
    for (const std::string& problem : problems)
        std::cerr << "dovrel: " << problem << "\n";
}

void printClasses(const std::string& file) {
    std::vector<std::string> problems;
    const merrowd::Recording recording(file, problems);
    std::cout << merrowd::describeClasses(recording, problems);
    reportProblems(problems);
    if (!problems.empty()) exitFailed();
}

std::string findValue(const ServerState& state, const std::string& name) {
    const auto found = std::find_if(state.values.begin(), state.values.end(),
                                    [&name](const ServerState::Value& value) { return value.name == name; });
    return found != state.values.end() ? found->text : "0";
}

ServerState askServer(const std::string& settings) {
    const std::optional<ServerState> state = sendSettings(settings, kTimeOut);
    if (!state) throw ToolFailure("the server has ended before the end of the replay");
    return *state;
}

/// Lets the server replay a recording until the object is destroyed.
class RunningReplay {
  public:
    RunningReplay() = default;
    RunningReplay(const RunningReplay&) = delete;
    RunningReplay& operator=(const RunningReplay&) = delete;
    ~RunningReplay() {
        if (!ends_) return;
        std::string settings;
        appendStringEntry(settings, "replay", "");
        try {
            askServer(settings);
        } catch (const std::exception& failure) {
            std::cerr << "dovrel: " << failure.what() << "\n";
        } catch (CPPException* caught) {
            const std::unique_ptr<CPPException> failure(caught);
            std::cerr << "dovrel: " << failure->getMessage() << "\n";
        }
    }

    /// The object must exist before the server is asked: a server that replies too late replays all the same.
    void start(const std::string& file, bool isStrict) {
        std::string settings;
        appendStringEntry(settings, "replay", file);
        appendStringEntry(settings, "replayMode", isStrict ? "inSequence" : "byRequest");
        state_ = askServer(settings);
    }

    const ServerState& stateAtStart() const { return state_; }

    /// The server goes on replaying after the object has been destroyed.
    void keep() { ends_ = false; }

  private:
    ServerState state_;
    bool ends_ = true;
};

int replayFor(const std::vector<std::string>& command) {
    const int status = runChildCommand(command);
    const ServerState state = askServer("");
    const std::string refused = findValue(state, "refused");
    std::cerr << "dovrel: " << findValue(state, "replayed") << " requests were replayed, " << refused
              << " were not in the recording\n";
    return status == kSucceeded && refused != "0" ? kFailed : status;
}

void replay(const Options& options) {
    const std::string file = std::filesystem::absolute(options.file);
    if (options.printsClasses) return printClasses(file);
    ensureServerRuns();
    RunningReplay running;
    running.start(file, options.isStrict);
    reportProblems(running.stateAtStart().problems);
    const std::string count = findValue(running.stateAtStart(), "recorded");
    if (count == "0") throw ToolFailure("there is nothing to replay in " + file);
    if (options.command.empty()) {
        running.keep();
        std::cout << "the server replays " << count << " exchanges\n";
        return;
    }
    const int status = replayFor(options.command);
    if (status != kSucceeded) throw CLI::RuntimeError(status);
}

}  // namespace

void addReplay(CLI::App& app) {
    CLI::App& subcommand =
        addSubcommand(app, "replay", "Let the server play a recording back",
                      "dovrel replay trouble.recording -- ./host\n"
                      "dovrel replay --strict trouble.recording\n"
                      "dovrel replay --classes trouble.recording > Classes.conf",
                      std::string(kCommandStatusNotes) +
                          " It also exits with 1 if the command succeeds and a request was refused.");
    const auto options = std::make_shared<Options>();
    subcommand.add_option("FILE", options->file, "The recording")->required()->check(notEmpty());
    CLI::Option* const command = subcommand.add_option(
        "COMMAND", options->command,
        "The command and its arguments, after --; without it the server goes on replaying until "
        "\"replay\" is empty");
    CLI::Option* const strict =
        subcommand.add_flag("--strict", options->isStrict, "Replay strictly in sequence, not by request");
    subcommand
        .add_flag("--classes", options->printsClasses,
                  "Print the classes of the recording as settings, and replay nothing")
        ->excludes(strict)
        ->excludes(command);
    subcommand.callback([options] { replay(*options); });
}

}  // namespace dovrel::tools
