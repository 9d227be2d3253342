#include "tools/server/ServerSettingsCommands.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <iostream>
#include <memory>
#include <optional>

#include "settings/LineGrammar.h"
#include "tools/Subcommand.h"
#include "tools/WholeFile.h"
#include "tools/server/ServerChannel.h"

namespace dovrel::tools {

namespace {

constexpr std::chrono::seconds kTimeOut(60);

void send(const std::string& settings) {
    const std::optional<ServerState> state = sendSettings(settings, kTimeOut);
    if (!state) throw ToolFailure("no server of this user and this root runs");
    for (const std::string& problem : state->problems)
        std::cerr << "dovrel: the server reports: " << problem << "\n";
    if (!state->problems.empty()) exitFailed();
}

void appendEntry(std::string& text, const std::string& name, const std::string& value) {
    const int32_t number = leadingInteger(value);
    if (std::to_string(number) == value) {
        appendIntEntry(text, name, number);
    } else {
        appendStringEntry(text, name, value);
    }
}

struct Setting {
    std::string name;
    std::string value;
};

// An option of "misbehave" and the setting that it sends.
struct MisbehaviourOption {
    const char* option;
    const char* setting;
    const char* description;
};

constexpr MisbehaviourOption kOptions[] = {
    {"--command", "misbehaveCommand", "Only in exchanges of this command, such as \"call method\""},
    {"--skip", "misbehaveSkip", "Handle this number of such exchanges normally first"},
    {"--times", "misbehaveTimes", "Misbehave only this often"},
    {"--delay", "delay", "For late: milliseconds"},
    {"--size", "cutTo", "For cut: bytes of the reply that are sent"},
    {"--huge-size", "hugeSize", "For huge: bytes of the result"},
    {"--error", "errorCode", "For error: the error code"},
    {"--error-text", "errorText", "For error: its text"},
    {"--message", "messageText", "For message: its text"},
    {"--event-status", "eventStatus", "For failedEvent: the status"},
};

struct Misbehaviour {
    std::string fault;
    std::string values[std::size(kOptions)];
    const CLI::Option* options[std::size(kOptions)] = {};
};

void sendMisbehaviour(const Misbehaviour& misbehaviour) {
    std::string text;
    appendStringEntry(text, "misbehave", misbehaviour.fault);
    for (size_t index = 0; index < std::size(kOptions); ++index)
        if (misbehaviour.options[index]->count() > 0)
            appendEntry(text, kOptions[index].setting, misbehaviour.values[index]);
    send(text);
}

}  // namespace

void addServerLoad(CLI::App& server) {
    CLI::App& subcommand =
        addSubcommand(server, "load",
                      "Send settings from a file to the running development server; others keep their values",
                      "dovrel server load settings.conf\ndovrel server load <settings.conf");
    const auto file = std::make_shared<std::string>("-");
    subcommand.add_option("file", *file,
                          "Settings as in Merrowd.conf; standard input if it is \"-\" or missing");
    subcommand.callback([file] { send(readInput(*file)); });
}

void addServerSet(CLI::App& server) {
    CLI::App& subcommand =
        addSubcommand(server, "set", "Change one setting of the running development server",
                      "dovrel server set log 1\ndovrel server set interfaceVersion 6");
    const auto setting = std::make_shared<Setting>();
    subcommand.add_option("setting", setting->name, "Name of the setting")->required();
    subcommand.add_option("value", setting->value, "The value: a number or a text")->required();
    subcommand.callback([setting] {
        std::string text;
        appendEntry(text, setting->name, setting->value);
        send(text);
    });
}

void addServerMisbehave(CLI::App& server) {
    CLI::App& subcommand = addSubcommand(
        server, "misbehave", "Let the running development server misbehave from now on; \"none\" ends it",
        "dovrel server misbehave late --delay 2000\n"
        "dovrel server misbehave error --error 32 --command \"register application\" --times 1\n"
        "dovrel server misbehave none");
    const auto misbehaviour = std::make_shared<Misbehaviour>();
    subcommand
        .add_option("fault", misbehaviour->fault, "What happens: none, late, silent, vanishBefore and others")
        ->required();
    for (size_t index = 0; index < std::size(kOptions); ++index)
        misbehaviour->options[index] = subcommand.add_option(
            kOptions[index].option, misbehaviour->values[index], kOptions[index].description);
    subcommand.callback([misbehaviour] { sendMisbehaviour(*misbehaviour); });
}

}  // namespace dovrel::tools
