#include "tools/decode/Decode.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <limits>
#include <map>
#include <memory>

#include "tools/Subcommand.h"
#include "tools/WholeFile.h"
#include "tools/decode/DecodedOutput.h"
#include "tools/decode/Decoder.h"
#include "tools/decode/HexText.h"

namespace dovrel::tools {

namespace {

constexpr char kExamples[] =
    "dovrel decode request.bin                   a file with the bytes\n"
    "echo 41 73 41 6B 00 01 00 00 00 08 | dovrel decode\n"
    "dovrel decode --kind pack --all record.bin  a transfer pack with all of its bytes\n"
    "dovrel decode --json reply.hex              for programs";

constexpr uint32_t kMostBytesShown = 64;

const std::map<std::string, InputKind> kKinds{{"block", InputKind::kBlock},
                                              {"object", InputKind::kTransferObject},
                                              {"list", InputKind::kByteArrayList},
                                              {"pack", InputKind::kTransferPack}};

constexpr char kNotes[] =
    "Hexadecimal text is pairs of digits, or a dump of \"xxd\" or \"hexdump -C\". Use \"od -An -v -tx1\" "
    "without its\n"
    "offsets: a single blank follows them, so they would be read as bytes.";

struct Options {
    std::string file = "-";
    std::string kind;
    bool isHex = false;
    bool isBinary = false;
    bool showsAll = false;
    bool isJson = false;
};

// Returns the bytes of the input, which may be hexadecimal text.
std::string readBytes(const Options& options, const std::string& input) {
    if (options.isBinary || (!options.isHex && !isPlainText(input))) return input;
    HexText text = parseHexText(input);
    if (text.problem.empty()) return std::move(text.bytes);
    throw ToolFailure("the input is text, but not hexadecimal: " + text.problem);
}

std::optional<InputKind> selectedKind(const Options& options) {
    if (options.kind.empty()) return std::nullopt;
    return kKinds.at(options.kind);
}

void run(const Options& options) {
    const std::string bytes = readBytes(options, readInput(options.file));
    constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();
    if (bytes.size() > kLargest) throw ToolFailure("the input has 4 GiB or more, which no block can have");
    const ByteView view{reinterpret_cast<const uint8_t*>(bytes.data()), static_cast<uint32_t>(bytes.size())};
    const Decoded decoded =
        decode(view, selectedKind(options), options.showsAll ? kLargest : kMostBytesShown);
    if (options.isJson) {
        std::cout << toJson(decoded).dump(2) << "\n";
    } else {
        std::cout << toOutputText(decoded);
    }
    if (decoded.hasProblems()) exitFailed();
}

}  // namespace

void addDecode(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "decode", "Show the bytes of a request, a reply, a block or a transfer pack with offsets",
        kExamples, kNotes);
    const auto options = std::make_shared<Options>();
    subcommand.add_option("file", options->file, "The file with the bytes (default: -, standard input)");
    subcommand
        .add_option(
            "--kind", options->kind,
            "What the bytes are: a structured block, a transfer object, a byte array list or a transfer "
            "pack (default: detected)")
        ->check(CLI::IsMember({"block", "object", "list", "pack"}));
    CLI::Option* const hex =
        subcommand.add_flag("--hex", options->isHex, "The input is hexadecimal text (default: detected)");
    subcommand.add_flag("--binary", options->isBinary, "The input is the bytes themselves")->excludes(hex);
    subcommand.add_flag("--all", options->showsAll, "Show all bytes of long data (default: the first 64)");
    addJsonOption(subcommand, options->isJson);
    subcommand.callback([options] { run(*options); });
}

}  // namespace dovrel::tools
