#include "tools/calls/InputBytes.h"

#include <CLI/CLI.hpp>

#include "tools/Subcommand.h"
#include "tools/WholeFile.h"
#include "tools/decode/HexText.h"

namespace dovrel::tools {

std::string parseHexadecimal(const std::string& text) {
    const HexText parsed = parseHexText(text);
    if (!parsed.problem.empty()) rejectArguments("not pairs of hexadecimal digits: " + parsed.problem);
    return parsed.bytes;
}

void InputBytes::addOptions(CLI::App& subcommand, const std::string& name, const std::string& description) {
    CLI::Option* const text = subcommand.add_option(name, text_, description);
    subcommand.add_flag("--hex", isHexadecimal_, name + " consists of hexadecimal digits");
    subcommand
        .add_option("--file", file_,
                    "Read " + name + " from this file, or from standard input if it is \"-\"")
        ->excludes(text)
        ->check(notEmpty())
        ->type_name("FILE");
}

std::string InputBytes::read() const {
    const std::string bytes = file_.empty() ? text_ : readInput(file_);
    return isHexadecimal_ ? parseHexadecimal(bytes) : bytes;
}

}  // namespace dovrel::tools
