// What "call", "command" and "info" share: their options, and the steps from the library to the output.
#pragma once

#include <functional>
#include <string>

#include "dovrel/pos.hpp"
#include "tools/calls/InputBytes.h"
#include "tools/calls/ResultOutput.h"

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Returns the identifier for a command-line argument: 32 hexadecimal digits, or a name of at most 16 bytes. Rejects
/// the arguments otherwise.
pos::Identifier parseIdentifier(const std::string& text);

/// The text about failures in the help of the three subcommands.
extern const char kOperationNotes[];

/// It must exist until the operation has run.
class Operation {
  public:
    /// Adds the options. `input` names the argument with the bytes to send, `inputDescription` describes it.
    void addOptions(CLI::App& subcommand, const std::string& input, const std::string& inputDescription);

    /// Sends the bytes and returns the result. Throws a pos::Failure. It is destroyed before the session is closed.
    using Send = std::function<pos::Bytes(pos::View bytes)>;

    /// Reads the bytes to send, opens a session, passes it to `prepare`, and calls the function that `prepare` returns as often as --repeat
    /// demands. Then writes the result or the summary of the times. Throws a ToolFailure if a step fails; the library
    /// has shown the reason to the user then.
    void run(const std::function<Send(const pos::Session& session)>& prepare) const;

    /// The name of the application that alerts show.
    const std::string& applicationName() const { return application_; }

    /// The argument with the bytes to send, for checks before anything is sent.
    const InputBytes& input() const { return input_; }

  private:
    void sendAndWrite(const Send& send, const std::string& bytes) const;
    void repeat(const Send& send, const std::string& bytes) const;

    InputBytes input_;
    ResultOutput output_;
    std::string bundle_;
    std::string application_ = "dovrel";
    uint32_t repetitions_ = 0;  // 0: the option was not given
};

}  // namespace dovrel::tools
