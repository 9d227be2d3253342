// The help, the exit status and the failures that all subcommands of the tool have in common.
//
// A subcommand is a function add…(CLI::App&) in a header of its own. main.cpp calls these functions from one
// list. The function adds the options, and a callback that does the work when the arguments have been parsed.
#pragma once

#include <stdexcept>
#include <string>

namespace CLI {
class App;
class Validator;
}  // namespace CLI

namespace dovrel::tools {

/// The exit status of the tool.
constexpr int kSucceeded = 0;
constexpr int kFailed = 1;          ///< the operation failed, or troubles were found
constexpr int kWrongArguments = 2;  ///< nothing was done

/// The operation failed. main.cpp writes the message as one line to standard error, after "dovrel: ", and the
/// tool exits with kFailed.
class ToolFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Adds a subcommand to the tool or to another subcommand, which owns it. `summary` is one sentence. `examples`
/// are complete commands, one on each line. The help shows `notes` after the options, then the examples and the
/// exit status.
CLI::App& addSubcommand(CLI::App& parent, const std::string& name, const std::string& summary,
                        const std::string& examples, const std::string& notes = "");

/// Returns a check for options whose value must not be empty. A script whose variable is not set passes such a
/// value; without the check, the option would count as not given.
CLI::Validator notEmpty();

/// Adds the option --json, which sets `isJson`.
void addJsonOption(CLI::App& subcommand, bool& isJson);

/// Ends the subcommand with kFailed and writes nothing. For subcommands whose output tells the failure.
[[noreturn]] void exitFailed();

/// Ends the subcommand with kWrongArguments and the message.
[[noreturn]] void rejectArguments(const std::string& message);

}  // namespace dovrel::tools
