#include "tools/completion/BashCompletion.h"

#include <CLI/CLI.hpp>
#include <vector>

namespace dovrel::tools {

namespace {

constexpr char kStart[] =
    R"bash(# Completes the arguments of dovrel in bash. "dovrel completion" prints this script.
_dovrel() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=dovrel subcommands='' options='' i
    for ((i = 1; i < COMP_CWORD; i++)); do
        [[ ${COMP_WORDS[i]} != -- ]] || return
        case "$command ${COMP_WORDS[i]}" in
)bash";

constexpr char kValues[] = R"bash(                command+=" ${COMP_WORDS[i]}" ;;
        esac
    done
    case "$command $previous" in
)bash";

constexpr char kWords[] = R"bash(    esac
    case $command in
)bash";

constexpr char kEnd[] = R"bash(    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "$subcommands" -- "$current")
    fi
}
complete -o default -F _dovrel dovrel
)bash";

std::string joined(const std::vector<std::string>& words, const std::string& separator) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : separator) + word;
    return text;
}

std::vector<const CLI::App*> listSubcommands(const CLI::App& app) {
    std::vector<const CLI::App*> subcommands;
    for (const CLI::App* subcommand : app.get_subcommands({}))
        if (!subcommand->get_name().empty()) subcommands.push_back(subcommand);
    return subcommands;
}

// Returns the names of an option with their hyphens.
std::vector<std::string> listNames(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    for (const std::string& name : option.get_snames())
        names.push_back("-" + name);
    return names;
}

// Returns the values of which the option takes one, separated by blanks, or "". The type name of such an option
// ends with a list in braces.
std::string listChoices(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const size_t begin = type.find('{');
    const size_t end = type.find('}', begin);
    if (end == std::string::npos) return "";
    std::string choices = type.substr(begin + 1, end - begin - 1);
    for (char& c : choices)
        if (c == ',') c = ' ';
    return choices;
}

// The parts of the script.
struct Script {
    std::vector<std::string> commands;  // patterns of all subcommands
    std::string values;                 // cases for the words after options with a value
    std::string words;                  // cases for the subcommands and options of each command
};

void addValues(Script& script, const std::string& command, const CLI::Option& option) {
    if (option.get_expected_max() == 0) return;
    std::vector<std::string> patterns;
    for (const std::string& name : listNames(option))
        patterns.push_back("\"" + command + " " + name + "\"");
    const std::string choices = listChoices(option);
    script.values += "        " + joined(patterns, " | ") + ")\n";
    if (!choices.empty())
        script.values +=
            "            mapfile -t COMPREPLY < <(compgen -W \"" + choices + "\" -- \"$current\")\n";
    script.values += "            return ;;\n";
}

void addCommand(Script& script, const std::string& command, const CLI::App& app) {
    std::vector<std::string> options;
    for (const CLI::Option* option : app.get_options()) {
        const std::vector<std::string> names = listNames(*option);
        if (names.empty()) continue;
        options.insert(options.end(), names.begin(), names.end());
        addValues(script, command, *option);
    }
    std::vector<std::string> subcommands;
    for (const CLI::App* subcommand : listSubcommands(app))
        subcommands.push_back(subcommand->get_name());
    script.words += "        \"" + command + "\")\n            subcommands='" + joined(subcommands, " ") +
                    "'\n            options='" + joined(options, " ") + "' ;;\n";
    for (const CLI::App* subcommand : listSubcommands(app)) {
        const std::string name = command + " " + subcommand->get_name();
        script.commands.push_back("\"" + name + "\"");
        addCommand(script, name, *subcommand);
    }
}

}  // namespace

std::string bashCompletion(const CLI::App& program) {
    Script script;
    addCommand(script, "dovrel", program);
    return kStart + ("            " + joined(script.commands, " | ")) + ")\n" + kValues + script.values +
           kWords + script.words + kEnd;
}

}  // namespace dovrel::tools
