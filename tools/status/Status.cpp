#include "tools/status/Status.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "tools/Subcommand.h"
#include "tools/status/NumberMeanings.h"

namespace dovrel::tools {

namespace {

constexpr char kExamples[] =
    "dovrel status -600            a status of the platform\n"
    "dovrel status 27 --json       an error code of the server\n"
    "dovrel status 0x80000008      the result of a function\n"
    "dovrel status 384269E80230    an error-site code, the detail in the error log";

struct Options {
    std::string number;
    bool isJson = false;
};

std::string inHexadecimal(int64_t number) {
    char text[32];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(number));
    return text;
}

std::vector<NumberMeaning> explain(const std::string& text) {
    const std::vector<NumberMeaning> sites = findSiteMeanings(text);
    if (!sites.empty()) return sites;
    size_t length = 0;
    int64_t number = 0;
    try {
        const bool isHexadecimal =
            text.find("0x") != std::string::npos || text.find("0X") != std::string::npos;
        number = std::stoll(text, &length, isHexadecimal ? 16 : 10);
    } catch (const std::exception&) {
        length = 0;
    }
    if (length == 0 || length != text.size())
        rejectArguments("\"" + text + "\" is neither a number nor an error-site code");
    return findMeanings(number);
}

nlohmann::ordered_json toJson(const std::vector<NumberMeaning>& meanings) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const NumberMeaning& meaning : meanings)
        list.push_back({{"kind", meaning.kind},
                        {"number", meaning.number},
                        {"hexadecimal", inHexadecimal(meaning.number)},
                        {"name", meaning.name},
                        {"whatToDo", meaning.advice}});
    return list;
}

void print(const std::vector<NumberMeaning>& meanings) {
    for (const NumberMeaning& meaning : meanings)
        std::cout << meaning.kind << " " << meaning.number << " (" << inHexadecimal(meaning.number)
                  << "): " << meaning.name << "\n    " << meaning.advice << "\n";
}

void run(const Options& options) {
    const std::vector<NumberMeaning> meanings = explain(options.number);
    if (options.isJson) {
        std::cout << toJson(meanings).dump(2) << "\n";
    } else {
        print(meanings);
    }
    if (meanings.empty()) throw ToolFailure("no number of the library or the platform: " + options.number);
}

}  // namespace

void addStatus(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "status", "Explain a number: a platform status, an error code, a result or an error-site code",
        kExamples);
    const auto options = std::make_shared<Options>();
    subcommand.add_option("number", options->number, "The number, decimal or hexadecimal (0x…)")->required();
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { run(*options); });
}

}  // namespace dovrel::tools
