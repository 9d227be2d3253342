// The example of a class in docs/development-server.md. A test compares it with the page.
#include "server/BuiltInClass.h"

namespace merrowd {
namespace {

class Greeter {
  public:
    Greeter(const Caller& caller, UserMessage& message) {
        if (caller.process == 0) return;
        message = {1, "Process " + std::to_string(caller.process) + " has a greeter."};
    }

    MethodResult greet(CPPByteArray name, const Caller& caller) {
        if (name.getSize() == 0) throw Refusal{refusalCode::kPOSParameterFormat, "there is no name"};
        MethodResult result(toBytes("Hello, " + bytesToText(name) + "!"));
        result.message = {1, caller.name + " has greeted " + bytesToText(name) + "."};
        return result;
    }

    CPPByteArray echo(CPPByteArray argument) { return argument; }
};

const BuiltInClass<Greeter> kGreeter("Greeter", {{"greet", &Greeter::greet}, {"echo", &Greeter::echo}});

}  // namespace
}  // namespace merrowd
