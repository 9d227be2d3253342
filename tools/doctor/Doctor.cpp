#include "tools/doctor/Doctor.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/Subcommand.h"
#include "tools/Terminal.h"
#include "tools/doctor/AlertChecks.h"
#include "tools/doctor/CheckResult.h"
#include "tools/doctor/FolderChecks.h"
#include "tools/doctor/InstallationChecks.h"
#include "tools/doctor/ServerChecks.h"
#include "tools/system/SystemFacts.h"

namespace dovrel::tools {

namespace {

constexpr char kNotes[] =
    "The doctor changes nothing. It launches no server unless --launch is given, because a server goes on "
    "running.\n"
    "A warning means that calls work, but something is not as it should be; only troubles are failures.";

struct Options {
    bool launches = false;
    bool isJson = false;
};

struct SeverityName {
    const char* name;
    Colour colour;
};

SeverityName nameSeverity(Severity severity) {
    switch (severity) {
        case Severity::ok:
            return {"ok", Colour::green};
        case Severity::note:
            return {"note", Colour::bold};
        case Severity::warning:
            return {"warning", Colour::yellow};
        case Severity::trouble:
            break;
    }
    return {"trouble", Colour::red};
}

CheckResults examine(bool launches) {
    CheckResults results;
    checkRoot(results);
    checkLibrary(results);
    checkTexts(results);
    const bool isInstalled = checkInstalledServer(results);
    if (checkRunningServers(launches && isInstalled, results)) checkExchange(results);
    checkEndpoints(results);
    checkLogFolder(results);
    checkAlerts(results);
    checkErrorLog(results);
    return results;
}

nlohmann::ordered_json toJson(const CheckResults& results) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const CheckResult& result : results.all())
        list.push_back({{"subject", result.subject},
                        {"severity", nameSeverity(result.severity).name},
                        {"finding", result.finding},
                        {"whatToDo", result.whatToDo}});
    return list;
}

std::string pad(const std::string& text, size_t width) {
    return text.size() < width ? text + std::string(width - text.size(), ' ') : text;
}

void print(const CheckResults& results) {
    constexpr size_t kSeverityWidth = 9;
    constexpr size_t kSubjectWidth = 17;
    const bool showColours = showsColours(STDOUT_FILENO);
    for (const CheckResult& result : results.all()) {
        const SeverityName severity = nameSeverity(result.severity);
        std::cout << paint(pad(severity.name, kSeverityWidth), severity.colour, showColours)
                  << pad(result.subject, kSubjectWidth) << result.finding << "\n";
        if (!result.whatToDo.empty())
            std::cout << std::string(kSeverityWidth, ' ') << "what to do: " << result.whatToDo << "\n";
    }
    std::cout << "\n"
              << countText(results.count(Severity::trouble), "trouble", "troubles") << ", "
              << countText(results.count(Severity::warning), "warning", "warnings") << "\n";
}

void run(const Options& options) {
    const CheckResults results = examine(options.launches);
    if (options.isJson) {
        std::cout << toJson(results).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
    } else {
        print(results);
    }
    if (results.count(Severity::trouble) != 0) exitFailed();
}

}  // namespace

void addDoctor(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "doctor", "Examine an installation, and say what is wrong and what to do",
        "dovrel doctor\n"
        "dovrel doctor --launch    also checks the exchange with a server that does not run yet\n"
        "POS_SYSTEM_ROOT=/opt/dovrel dovrel doctor --json",
        kNotes);
    const auto options = std::make_shared<Options>();
    subcommand.add_flag("--launch", options->launches, "Launch the server if none runs");
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { run(*options); });
}

}  // namespace dovrel::tools
