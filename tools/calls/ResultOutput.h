// Where the bytes go that the server returns.
#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace dovrel::tools {

/// The options for the output of a result. It must exist until the result is written.
class ResultOutput {
  public:
    /// Adds the options --output, --format and --json.
    void addOptions(CLI::App& subcommand);

    /// Writes the bytes to the file of --output, if there is one, and otherwise to standard output:
    ///
    /// - with --json as a JSON object,
    /// - with --format raw unchanged, with --format hex as a dump,
    /// - otherwise unchanged, except on a terminal. There a text ends with a line feed, bytes that are not a text are
    ///   shown as a dump, and of a long result only the beginning.
    ///
    /// Throws a ToolFailure if the file cannot be written; an existing file then keeps its old content.
    void write(std::string_view bytes) const;

    bool isJson() const { return isJson_; }
    bool hasFile() const { return !file_.empty(); }

  private:
    std::string format_ = "auto";
    std::string file_;
    bool isJson_ = false;
};

}  // namespace dovrel::tools
