// The bytes that a subcommand sends: a text, hexadecimal digits, a file or standard input.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace dovrel::tools {

/// Returns the bytes of a hexadecimal text (tools/decode/HexText.h). Rejects the arguments if it is not one.
std::string parseHexadecimal(const std::string& text);

/// The options that select the bytes of one argument. It must exist until the arguments are parsed.
class InputBytes {
  public:
    /// Adds the positional argument `name`, which may be omitted, and the options --hex and --file.
    void addOptions(CLI::App& subcommand, const std::string& name, const std::string& description);

    /// Returns the selected bytes; none if nothing was selected. Reads the file, or standard input for "-". Throws a
    /// ToolFailure if it cannot be read.
    std::string read() const;

    /// Returns whether the argument is the text itself: neither --hex nor --file was given.
    bool isText() const { return !isHexadecimal_ && file_.empty(); }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
    std::string file_;
    bool isHexadecimal_ = false;
};

}  // namespace dovrel::tools
