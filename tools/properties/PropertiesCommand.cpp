#include "tools/properties/PropertiesCommand.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/Subcommand.h"
#include "tools/properties/PropertiesActions.h"

namespace dovrel::tools {

namespace {

constexpr char kSectionHelp[] = "The section that begins with the entry KEY=VALUE";
constexpr char kSectionKeyHelp[] = "The key with which each section of the file begins";

using Options = PropertiesOptions;
using SharedOptions = std::shared_ptr<Options>;

void addFile(CLI::App& subcommand, Options& options, const char* help = "The file (-: standard input)") {
    subcommand.add_option("file", options.file, help)->required();
}

void addSection(CLI::App& subcommand, Options& options) {
    subcommand.add_option("--section", options.section, kSectionHelp)->type_name("KEY=VALUE");
}

void addSectionKey(CLI::App& subcommand, Options& options) {
    subcommand.add_option("--section-key", options.sectionKey, kSectionKeyHelp)->type_name("KEY");
}

void addOutput(CLI::App& subcommand, Options& options) {
    subcommand.add_option("-o,--output", options.output, "The file to write (default: -, standard output)")
        ->check(notEmpty())
        ->type_name("FILE");
}

void addShow(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand =
        addSubcommand(parent, "show", "List the entries that readers of the file use",
                      "dovrel properties show settings.txt\n"
                      "dovrel properties show --section-key LANGUAGE MultiLanguageTexts.mls");
    addFile(subcommand, *options);
    addSectionKey(subcommand, *options);
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { showProperties(*options); });
}

void addGet(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand = addSubcommand(parent, "get", "Print the value of an entry",
                                         "dovrel properties get settings.txt delay");
    addFile(subcommand, *options);
    subcommand.add_option("key", options->key, "The key of the entry")->required();
    addSection(subcommand, *options);
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { getProperty(*options); });
}

void addSet(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand =
        addSubcommand(parent, "set", "Change or add an entry and leave all other lines as they are",
                      "dovrel properties set --int settings.txt delay 100\n"
                      "dovrel properties set --section CLASS=Scanner settings.txt note \"two pages\"");
    addFile(subcommand, *options,
            "The file, which is created if it does not exist (-: from standard input to standard output)");
    subcommand.add_option("key", options->key, "The key of the entry")->required();
    subcommand.add_option("value", options->value, "The new value")->required();
    CLI::Option* const integer =
        subcommand.add_flag("--int", options->isInteger,
                            "The value is a number (default: the type of the old value, or a string)");
    CLI::Option* const string = subcommand.add_flag("--string", options->isString, "The value is a string");
    CLI::Option* const bytes =
        subcommand.add_flag("--bytes", options->isBytes, "The value is bytes in hexadecimal");
    integer->excludes(string)->excludes(bytes);
    string->excludes(bytes);
    addSection(subcommand, *options);
    subcommand.callback([options] { setProperty(*options); });
}

void addRemove(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand =
        addSubcommand(parent, "remove", "Remove entries and leave all other lines as they are",
                      "dovrel properties remove settings.txt delay errorText");
    addFile(subcommand, *options, "The file");
    subcommand.add_option("keys", options->keys, "The keys of the entries")->required();
    addSection(subcommand, *options);
    subcommand.callback([options] { removeProperties(*options); });
}

void addCheck(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand =
        addSubcommand(parent, "check", "Find the lines that readers ignore or misunderstand",
                      "dovrel properties check settings.txt\n"
                      "dovrel properties check --section-key CLASS --json Merrowd.settings");
    subcommand.add_option("files", options->files, "The files (-: standard input)")->required();
    addSectionKey(subcommand, *options);
    subcommand.add_flag("--comments", options->allowsComments,
                        "Lines that are not part of an entry are comments, not problems");
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { checkProperties(*options); });
}

void addConvert(CLI::App& parent, const SharedOptions& options) {
    CLI::App& subcommand = addSubcommand(
        parent, "convert", "Convert a properties text to JSON, or such JSON to a properties text",
        "dovrel properties convert settings.txt -o settings.json\n"
        "dovrel properties convert settings.json -o settings.txt\n"
        "dovrel properties convert --section-key CLASS Merrowd.settings");
    addFile(subcommand, *options);
    addSectionKey(subcommand, *options);
    addOutput(subcommand, *options);
    subcommand.callback([options] { convertProperties(*options); });
}

void addCipher(CLI::App& parent, const SharedOptions& options, const std::string& name,
               const std::string& summary, void (*action)(const Options&)) {
    CLI::App& subcommand = addSubcommand(parent, name, summary,
                                         "dovrel properties " + name + " settings.txt -o other.txt\n" +
                                             "dovrel properties " + name + " --in-place settings.txt");
    addFile(subcommand, *options);
    addOutput(subcommand, *options);
    subcommand.add_flag("--in-place", options->isInPlace, "Replace the file")->excludes("--output");
    subcommand.callback([options, action] { action(*options); });
}

}  // namespace

void addProperties(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "properties", "Show, change, check and convert properties texts and configuration files",
        "dovrel properties show settings.txt\n"
        "dovrel properties set --int settings.txt delay 100\n"
        "dovrel properties check settings.txt");
    subcommand.require_subcommand(1);
    const auto options = std::make_shared<Options>();
    addShow(subcommand, options);
    addGet(subcommand, options);
    addSet(subcommand, options);
    addRemove(subcommand, options);
    addCheck(subcommand, options);
    addConvert(subcommand, options);
    addCipher(
        subcommand, options, "encipher",
        "Encipher a whole file, so that users do not edit it; everybody who has the library can read it",
        encipherFile);
    addCipher(subcommand, options, "decipher", "Print or write the text of an enciphered file", decipherFile);
}

}  // namespace dovrel::tools
