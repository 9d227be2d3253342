#include "tools/calls/Operation.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <iostream>

#include "tools/Subcommand.h"
#include "tools/calls/LoadedLibrary.h"
#include "tools/calls/Progress.h"
#include "tools/calls/Repetitions.h"

namespace dovrel::tools {

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr uint32_t kMostRepetitions = 100000000;

std::string activityText(size_t size) {
    return "the server works on " + sizeText(static_cast<double>(size));
}

}  // namespace

const char kOperationNotes[] =
    "The tool is a host like any other: it launches the server if necessary, and the library shows failures "
    "and\n"
    "messages of the server in alerts. With POS_ALERTS=log, and without a display, they go to standard "
    "error.";

pos::Identifier parseIdentifier(const std::string& text) {
    pos::Identifier identifier{};
    const bool isHexadecimal = text.size() == 2 * identifier.size() &&
                               text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
    if (!isHexadecimal && text.size() > identifier.size())
        rejectArguments("\"" + text + "\" is neither a name of at most 16 bytes nor 32 hexadecimal digits");
    return pos::makeIdentifier(isHexadecimal ? parseHexadecimal(text) : text);
}

void Operation::addOptions(CLI::App& subcommand, const std::string& input,
                           const std::string& inputDescription) {
    input_.addOptions(subcommand, input, inputDescription);
    output_.addOptions(subcommand);
    subcommand.add_option("--repeat", repetitions_, "Call this often, and print a summary of the times")
        ->check(CLI::Range(uint32_t{1}, kMostRepetitions))
        ->type_name("N");
    subcommand
        .add_option("--application", application_,
                    "Name of the application in alerts and in the server's log")
        ->type_name("NAME");
    subcommand.add_option("--bundle", bundle_, "Load this bundle instead of the installed one")
        ->check(notEmpty())
        ->type_name("PATH");
}

void Operation::run(const std::function<Send(const pos::Session& session)>& prepare) const {
    const std::string bytes = input_.read();
    loadLibrary(bundle_);
    try {
        const pos::Session session;
        const Send send = prepare(session);
        if (repetitions_ == 0) {
            sendAndWrite(send, bytes);
        } else {
            repeat(send, bytes);
        }
    } catch (const pos::Failure& failure) {
        throw ToolFailure(std::string(failure.what()) + "; the alert, or the message above, tells why");
    }
}

void Operation::sendAndWrite(const Send& send, const std::string& bytes) const {
    pos::Bytes result;
    {
        const Progress progress(activityText(bytes.size()));
        result = send(bytes);
    }
    output_.write(result.text());
}

void Operation::repeat(const Send& send, const std::string& bytes) const {
    Repetitions done;
    done.sent = bytes.size();
    pos::Bytes result;
    {
        Progress progress(activityText(bytes.size()));
        for (uint32_t count = 0; count < repetitions_; ++count) {
            progress.setActivity(std::to_string(count) + " of " + std::to_string(repetitions_) + " calls");
            const Clock::time_point start = Clock::now();
            result = send(bytes);
            done.times.push_back(Microseconds(Clock::now() - start).count());
        }
    }
    done.received = result.size();
    if (output_.hasFile()) output_.write(result.text());
    std::cout << (output_.isJson() ? done.toJson().dump(2) + "\n" : done.summary());
}

}  // namespace dovrel::tools
