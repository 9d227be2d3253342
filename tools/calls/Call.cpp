#include "tools/calls/Call.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/Subcommand.h"
#include "tools/calls/Operation.h"

namespace dovrel::tools {

namespace {

constexpr char kExamples[] =
    "dovrel call Digest md5 \"some text\"\n"
    "dovrel call Counter add 02000000 --hex --format hex\n"
    "dovrel call Echo echo --file picture.png --output copy.png\n"
    "dovrel call Echo echo hello --repeat 1000\n"
    "tar c folder | dovrel call Digest md5 --file -\n"
    "POS_ALERTS=log dovrel call Echo none      the reason of a failure goes to standard error";

struct Options {
    Operation operation;
    std::string className;
    std::string method;
    std::string executer;
};

// The object is destroyed before its application.
struct Instance {
    Instance(const pos::Session& session, const std::string& name, const pos::Identifier& classId)
        : application(session, name.c_str(), {classId}), object(application.create(classId)) {}

    pos::Application application;
    pos::Object object;
};

void run(const Options& options) {
    const pos::Identifier classId = parseIdentifier(options.className);
    const pos::Identifier executer = parseIdentifier(options.executer);
    options.operation.run([&](const pos::Session& session) -> Operation::Send {
        const auto instance =
            std::make_shared<Instance>(session, options.operation.applicationName(), classId);
        return [instance, executer, &options](pos::View bytes) {
            const char* const method = options.method.c_str();
            return options.executer.empty() ? instance->object.call(method, bytes)
                                            : instance->object.call(executer, method, bytes);
        };
    });
}

}  // namespace

void addCall(CLI::App& app) {
    CLI::App& subcommand = addSubcommand(
        app, "call", "Create an object of a class, call one of its methods, and show the result", kExamples,
        kOperationNotes);
    const auto options = std::make_shared<Options>();
    subcommand
        .add_option("class", options->className,
                    "Name of the class, or its identifier in 32 hexadecimal digits")
        ->required();
    subcommand.add_option("method", options->method, "Name of the method")->required();
    options->operation.addOptions(subcommand, "parameters", "The parameters of the method, as text");
    subcommand.add_option("--executer", options->executer, "Call the method on this executer")
        ->check(notEmpty())
        ->type_name("IDENTIFIER");
    subcommand.callback([options] { run(*options); });
}

}  // namespace dovrel::tools
