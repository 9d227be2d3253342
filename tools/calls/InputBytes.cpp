#include "tools/calls/InputBytes.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/Subcommand.h"
#include "tools/decode/HexText.h"

namespace dovrel::tools {

namespace {

constexpr char kStandardInput[] = "-";

std::string readAll(std::FILE* file, const std::string& name) {
    std::string content;
    char buffer[1 << 16];
    while (const size_t count = std::fread(buffer, 1, sizeof buffer, file))
        content.append(buffer, count);
    if (std::ferror(file) != 0) throw ToolFailure("cannot read " + name + ": " + std::strerror(errno));
    return content;
}

}  // namespace

std::string readInputFile(const std::string& path) {
    if (path == kStandardInput) return readAll(stdin, "standard input");
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr) throw ToolFailure("cannot open " + path + ": " + std::strerror(errno));
    return readAll(file.get(), path);
}

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
        ->type_name("FILE");
}

std::string InputBytes::read() const {
    const std::string bytes = file_.empty() ? text_ : readInputFile(file_);
    return isHexadecimal_ ? parseHexadecimal(bytes) : bytes;
}

}  // namespace dovrel::tools
