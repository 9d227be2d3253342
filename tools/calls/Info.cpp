#include "tools/calls/Info.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <memory>

#include "tools/Subcommand.h"
#include "tools/calls/Operation.h"

namespace dovrel::tools {

namespace {

constexpr char kExamples[] =
    "dovrel info 1                    the version of the development server\n"
    "dovrel info 352 --format hex     the interface version of the library, which needs no server\n"
    "dovrel info 6001 --hex           the same request, as bytes";

/// Returns the request for a number: two bytes, the least significant first.
std::string parseNumber(const std::string& text) {
    const bool isHexadecimal = text.compare(0, 2, "0x") == 0 || text.compare(0, 2, "0X") == 0;
    const char* const begin = text.data() + (isHexadecimal ? 2 : 0);
    const char* const end = text.data() + text.size();
    uint16_t number = 0;
    const auto [last, error] = std::from_chars(begin, end, number, isHexadecimal ? 16 : 10);
    if (error != std::errc() || last != end)
        rejectArguments("\"" + text +
                        "\" is not a number from 0 to 65535; --hex and --file take other requests");
    return {static_cast<char>(number & 0xFF), static_cast<char>(number >> 8)};
}

void run(const Operation& operation) {
    const InputBytes& input = operation.input();
    const std::string request = input.isText() ? parseNumber(input.text()) : "";
    operation.run([&](const pos::Session& session) -> Operation::Send {
        return
            [&](pos::View bytes) { return session.information(input.isText() ? pos::View(request) : bytes); };
    });
}

}  // namespace

void addInfo(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "info", "Fetch a block of information from the server, and show it", kExamples, kOperationNotes);
    const auto operation = std::make_shared<Operation>();
    operation->addOptions(
        subcommand, "request",
        "The request: a number, decimal or hexadecimal after 0x, which is sent as two bytes");
    subcommand.callback([operation] { run(*operation); });
}

}  // namespace dovrel::tools
