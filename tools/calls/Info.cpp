#include "tools/calls/Info.h"

#include <memory>

#include "tools/Subcommand.h"
#include "tools/calls/Operation.h"

namespace dovrel::tools {

namespace {

constexpr char kExamples[] =
    "dovrel info 1                    the version of the development server\n"
    "dovrel info 352 --format hex     the interface version of the library, which needs no server\n"
    "dovrel info 6001 --hex           the same request, as bytes";

constexpr unsigned long kLargestNumber = 0xFFFF;

/// Returns the request for a number: two bytes, the least significant first.
std::string parseNumber(const std::string& text) {
    size_t length = 0;
    unsigned long number = kLargestNumber + 1;
    try {
        number = std::stoul(text, &length, 0);
    } catch (const std::exception&) {
        length = 0;
    }
    if (length == 0 || length != text.size() || number > kLargestNumber)
        rejectArguments("\"" + text +
                        "\" is not a number from 0 to 65535; --hex and --file take other requests");
    return {static_cast<char>(number & 0xFF), static_cast<char>(number >> 8)};
}

pos::Bytes fetch(pos::View request) {
    std::uint8_t* data = nullptr;
    std::int32_t size = 0;
    // An application is not necessary for this.
    constexpr std::uint32_t kNoApplication = 0;
    if (posGetInfo(kNoApplication, request.data(), request.size(), &data, &size) != POS_OK)
        throw pos::Failure("posGetInfo failed");
    return pos::Bytes(data, static_cast<std::size_t>(size));
}

void run(const Operation& operation) {
    const InputBytes& input = operation.input();
    const std::string request = input.isText() ? parseNumber(input.text()) : "";
    operation.run([&](const pos::Session&) -> Operation::Send {
        return [&](pos::View bytes) { return fetch(input.isText() ? pos::View(request) : bytes); };
    });
}

}  // namespace

void addInfo(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "info", "Fetch a block of information from the server, and show it", kExamples, kOperationNotes);
    const auto operation = std::make_shared<Operation>();
    operation->addOptions(subcommand, "request", "The request: a number, which is sent as two bytes");
    subcommand.callback([operation] { run(*operation); });
}

}  // namespace dovrel::tools
