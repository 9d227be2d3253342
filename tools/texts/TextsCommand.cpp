#include "tools/texts/TextsCommand.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "platform/text/ReadableText.h"
#include "platform/trace/TraceText.h"
#include "tools/Subcommand.h"
#include "tools/properties/LineProblems.h"
#include "tools/texts/TextsCheck.h"
#include "tools/texts/TextsFile.h"

namespace dovrel::tools {

namespace {

constexpr char kFileHelp[] = "The texts file, for example MultiLanguageTexts.mls (-: standard input)";
constexpr char kStoredHelp[] = "Keep SDNL (a line break) and the first underscore (a mnemonic)";

struct Options {
    std::string file;
    std::string language;
    std::string key;
    bool asStored = false;
    bool isJson = false;
};

using SharedOptions = std::shared_ptr<Options>;

nlohmann::ordered_json toJson(const LanguageTexts& language, bool asStored) {
    auto texts = nlohmann::ordered_json::object();
    for (const TextEntry& entry : language.texts)
        texts[readableText(std::string(entry.key))] = TextsFile::shownText(entry, asStored);
    return texts;
}

void listLanguages(const TextsFile& file, const Options& options) {
    auto json = nlohmann::ordered_json::object();
    for (const LanguageTexts& language : file.languages()) {
        if (language.name.empty() || json.contains(language.name)) continue;
        json[language.name] = toJson(language, options.asStored);
        if (!options.isJson)
            std::cout << language.name << ": " << language.texts.size()
                      << (language.texts.size() == 1 ? " text\n" : " texts\n");
    }
    if (options.isJson) std::cout << json.dump(2) << "\n";
}

void listTexts(const LanguageTexts& language, const Options& options) {
    if (options.isJson) {
        std::cout << toJson(language, options.asStored).dump(2) << "\n";
        return;
    }
    for (const TextEntry& entry : language.texts)
        std::cout << traceOneLineText(std::string(entry.key)) << " = "
                  << traceOneLineText(TextsFile::shownText(entry, options.asStored)) << "\n";
}

void list(const Options& options) {
    const TextsFile file(options.file);
    if (options.language.empty()) return listLanguages(file, options);
    listTexts(file.find(options.language), options);
}

void get(const Options& options) {
    const TextsFile file(options.file);
    for (const TextEntry& entry : file.find(options.language).texts) {
        if (entry.key != options.key) continue;
        std::cout << TextsFile::shownText(entry, options.asStored) << "\n";
        return;
    }
    throw ToolFailure("there is no text for " + options.key + " in " + options.language);
}

void check(const Options& options) {
    std::vector<FileProblem> problems;
    for (const LineProblem& problem : checkTexts(TextsFile(options.file)))
        problems.push_back({options.file, problem});
    printProblems(problems, options.isJson);
    if (!problems.empty()) exitFailed();
}

void addList(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand =
        addSubcommand(parent, "list", "List the languages of a texts file, or the texts in one",
                      "dovrel texts list MultiLanguageTexts.mls\n"
                      "dovrel texts list MultiLanguageTexts.mls German");
    subcommand.add_option("file", options->file, kFileHelp)->required();
    subcommand.add_option("language", options->language, "The language whose texts are listed");
    subcommand.add_flag("--stored", options->asStored, kStoredHelp);
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { list(*options); });
}

void addGet(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand =
        addSubcommand(parent, "get", "Print one text in UTF-8 as the user sees it",
                      "dovrel texts get MultiLanguageTexts.mls German GENERAL_BUTTON_RETRY");
    subcommand.add_option("file", options->file, kFileHelp)->required();
    subcommand.add_option("language", options->language, "The language, as the file spells it")->required();
    subcommand.add_option("key", options->key, "The key of the text")->required();
    subcommand.add_flag("--stored", options->asStored, kStoredHelp);
    subcommand.callback([options] { get(*options); });
}

void addCheck(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand = addSubcommand(
        parent, "check", "Find missing and unused keys and languages, wrong lines and characters",
        "dovrel texts check MultiLanguageTexts.mls\n"
        "dovrel texts check --json MultiLanguageTexts.mls");
    subcommand.add_option("file", options->file, kFileHelp)->required();
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { check(*options); });
}

}  // namespace

void addTexts(CLI::App& app) {
    CLI::App& subcommand =
        addSubcommand(app, "texts", "List, print and check the texts that the library shows",
                      "dovrel texts list MultiLanguageTexts.mls\n"
                      "dovrel texts check MultiLanguageTexts.mls");
    subcommand.require_subcommand(1);
    const auto options = std::make_shared<Options>();
    addList(subcommand, options);
    addGet(subcommand, options);
    addCheck(subcommand, options);
}

}  // namespace dovrel::tools
