#include "tools/server/ServerLife.h"

#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/ServerDiscovery.h"
#include "platform/CFObject.h"
#include "platform/files/Places.h"
#include "platform/trace/StatusNames.h"
#include "settings/LineGrammar.h"
#include "tools/Subcommand.h"
#include "tools/server/ServerChannel.h"
#include "tools/server/ServerProcesses.h"
#include "tools/system/SystemFacts.h"

namespace dovrel::tools {

namespace {

using Clock = std::chrono::steady_clock;

constexpr useconds_t kBetweenLooks = 10000;

std::string describeServers(const std::vector<pid_t>& servers) {
    if (servers.empty()) return "its process is not known";
    std::string text = servers.size() == 1 ? "process" : "processes";
    for (const pid_t server : servers)
        text += " " + std::to_string(server);
    return text;
}

void start() {
    const bool wasRunning = ensureServerRuns();
    std::cout << (wasRunning ? "the server was running already: " : "the server runs: ")
              << describeServers(findServers()) << "\n";
}

struct StopOptions {
    bool isForced = false;
    bool waits = true;
    uint32_t seconds = 10;
};

bool hasEnded(const std::vector<pid_t>& servers) {
    return servers.empty() ? !isServerReachable() : std::none_of(servers.begin(), servers.end(), isRunning);
}

// Returns whether the servers have ended within the time.
bool waitForEnd(const std::vector<pid_t>& servers, std::chrono::seconds time) {
    const Clock::time_point end = Clock::now() + time;
    while (!hasEnded(servers)) {
        if (Clock::now() > end) return false;
        usleep(kBetweenLooks);
    }
    return true;
}

void askToEnd() {
    const int32_t status = Client_to_POS_Communicator().QuitServer();
    if (status != noErr) throw ToolFailure("the server cannot be asked to end: status " + statusText(status));
}

void killAll(const std::vector<pid_t>& servers) {
    if (servers.empty())
        throw ToolFailure("the process of the server is not known, because it runs under another program");
    for (const pid_t server : servers)
        kill(server, SIGKILL);
}

void stop(const StopOptions& options) {
    const std::vector<pid_t> servers = findServers();
    if (servers.empty() && !isServerReachable()) {
        std::cout << "no server runs\n";
        return;
    }
    if (options.isForced) {
        killAll(servers);
    } else {
        askToEnd();
    }
    if (!options.waits) return;
    if (!waitForEnd(servers, std::chrono::seconds(options.seconds)))
        throw ToolFailure("the server still runs after " + std::to_string(options.seconds) + " s (" +
                          describeServers(servers) + "); --force ends it");
    std::cout << "the server has ended: " << describeServers(servers) << "\n";
}

struct StatusOptions {
    bool isJson = false;
    uint32_t seconds = 10;
};

void printStatus(const StatusOptions& options) {
    const std::optional<ServerState> state = sendSettings("", std::chrono::seconds(options.seconds));
    nlohmann::ordered_json json = {{"running", state.has_value()}};
    std::string text = state ? "" : "no server runs\n";
    for (const ServerState::Value& value : state.value_or(ServerState()).values) {
        const int32_t number = leadingInteger(value.text);
        const bool isNumber = std::to_string(number) == value.text;
        json[value.name] = isNumber ? nlohmann::ordered_json(number) : nlohmann::ordered_json(value.text);
        text += value.name + ": " + value.text + "\n";
    }
    std::cout << (options.isJson ? json.dump(2) + "\n" : text);
    if (!state) exitFailed();
}

}  // namespace

bool ensureServerRuns() {
    const bool wasRunning = IsServerRunning();
    if (!wasRunning) launchInstalledServer();
    const int32_t status =
        Client_to_POS_Communicator().WakeServer(serverEvent::kWakeTimeOutMs, serverEvent::kWakeAttempts);
    if (status != noErr)
        throw ToolFailure("the server " + std::string(wasRunning ? "runs but" : "was launched, but it") +
                          " does not answer: status " + statusText(status));
    return wasRunning;
}

void launchInstalledServer() {
    CFURLRef found = nullptr;
    if (FindServerApplication(&found) != noErr)
        throw ToolFailure("no server is installed: there is no " +
                          fileSystemPath(std::string(places::kInstallFolder) + places::kServerBundleName));
    const CFObject<CFURLRef> application(found);
    const OSStatus status = LaunchServer(application.get());
    if (status != noErr) throw ToolFailure("the server cannot be launched: status " + statusText(status));
}

void addServerStart(CLI::App& server) {
    addSubcommand(server, "start", "Launch the server unless it runs, and wait until it answers",
                  "dovrel server start")
        .callback(start);
}

void addServerStop(CLI::App& server) {
    CLI::App& subcommand =
        addSubcommand(server, "stop", "Ask the server to end, and wait until it has ended",
                      "dovrel server stop\ndovrel server stop --force    ends a server that hangs");
    const auto options = std::make_shared<StopOptions>();
    subcommand.add_flag("--force", options->isForced, "Kill the server, with all that it has not stored");
    subcommand.add_flag("!--no-wait", options->waits, "Do not wait");
    subcommand.add_option("--timeout", options->seconds, "Longest time to wait for its end, in seconds (10)")
        ->check(CLI::Range(uint32_t{0}, kLongestTimeOut))
        ->type_name("SECONDS");
    subcommand.callback([options] { stop(*options); });
}

void addServerStatus(CLI::App& server) {
    CLI::App& subcommand = addSubcommand(
        server, "status", "Show whether the server runs, and what the development server says about itself",
        "dovrel server status\ndovrel server status --json");
    const auto options = std::make_shared<StatusOptions>();
    addJsonOption(subcommand, options->isJson);
    subcommand
        .add_option("--timeout", options->seconds, "Longest time to wait for the reply, in seconds (10)")
        ->check(CLI::Range(uint32_t{0}, kLongestTimeOut))
        ->type_name("SECONDS");
    subcommand.callback([options] { printStatus(*options); });
}

}  // namespace dovrel::tools
