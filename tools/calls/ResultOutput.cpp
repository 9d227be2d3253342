#include "tools/calls/ResultOutput.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/text/TextConversions.h"
#include "tools/Subcommand.h"
#include "tools/Terminal.h"
#include "tools/WholeFile.h"
#include "tools/calls/HexDump.h"

namespace dovrel::tools {

namespace {

constexpr size_t kMostOnTerminal = 4096;

nlohmann::ordered_json toJson(std::string_view bytes) {
    nlohmann::ordered_json object = {
        {"size", bytes.size()},
        {"hexadecimal", bytesToHexText(bytes.data(), static_cast<uint32_t>(bytes.size()))}};
    if (isPrintable(bytes)) object["text"] = std::string(bytes);
    return object;
}

std::string forTerminal(std::string_view bytes) {
    if (bytes.empty()) return "";
    const std::string_view shown = bytes.substr(0, kMostOnTerminal);
    const bool isText = isPrintable(bytes);
    std::string text = isText ? std::string(shown) : hexDump(shown);
    if (text.back() != '\n') text += '\n';
    if (shown.size() < bytes.size())
        text += "… " + std::to_string(bytes.size() - shown.size()) +
                " more bytes; --output FILE writes all of them\n";
    return text;
}

}  // namespace

void ResultOutput::addOptions(CLI::App& subcommand) {
    subcommand
        .add_option("-o,--output", file_,
                    "Write the result to this file, or to standard output if it is \"-\"")
        ->check(notEmpty())
        ->type_name("FILE");
    subcommand
        .add_option("--format", format_,
                    "raw: unchanged; hex: as a dump; auto: a dump of binary data on a terminal")
        ->check(CLI::IsMember({"auto", "raw", "hex"}))
        ->type_name("FORMAT");
    addJsonOption(subcommand, isJson_);
}

void ResultOutput::write(std::string_view bytes) const {
    std::string shown;
    if (isJson_) {
        shown = toJson(bytes).dump(2) + "\n";
    } else if (format_ == "hex") {
        shown = hexDump(bytes);
    } else if (format_ == "auto" && !hasFile() && isTerminal(STDOUT_FILENO)) {
        shown = forTerminal(bytes);
    } else if (hasFile()) {
        return writeOutput(file_, std::string(bytes));
    } else {
        std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return;
    }
    if (hasFile()) return writeOutput(file_, shown);
    std::cout << shown;
}

}  // namespace dovrel::tools
