// Fuzz target for the development server's settings text, from its file or from a control call. For
// every text, the server applies the entries that it can, reports the others in a properties text, and
// can then be set back to normal.

#include "FuzzTarget.h"
#include "server/ControlCalls.h"
#include "settings/Properties.h"

namespace {

using namespace merrowd;

class NoProcess : public ServerProcess {
  public:
    void pause(std::chrono::milliseconds) override {}
    void hang() override {}
    [[noreturn]] void vanish() override { std::abort(); }
};

int32_t problemsIn(const Outcome& outcome) {
    std::string text = bytesToText(outcome.parameter->bytes());
    dovrel::Properties status;
    status.load(text, true);
    return status.getInt("problems");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    NoProcess process;
    ServerState state(1);
    ExchangeLog log("/dev/null");
    ControlCalls control(state, process, log);
    FUZZ_CHECK(problemsIn(control.handle(std::string(data, data + size))) >= 0);
    for (const std::string& name : state.classes.names())
        FUZZ_CHECK(!name.empty());
    FUZZ_CHECK(
        problemsIn(control.handle("//misbehave\nSTR:none\n//handshake\nSTR:answered\n//log\nINT:0\n")) == 0);
    FUZZ_CHECK(state.settings.misbehaviour.fault == Fault::none);
    return 0;
}
