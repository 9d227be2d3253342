// The development server's settings text, as it comes from its file or by a control call: whatever it says,
// the server takes over what fits, answers with a properties text that tells about the rest, and can be told
// to behave again.

#include "FuzzTarget.h"
#include "server/Exchanges.h"
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
    Exchanges exchanges(state, process, log);
    FUZZ_CHECK(problemsIn(exchanges.control(std::string(data, data + size))) >= 0);
    for (const std::string& name : state.classes.names())
        FUZZ_CHECK(!name.empty());
    FUZZ_CHECK(problemsIn(exchanges.control(
                   "//misbehave\nSTR:none\n//handshake\nSTR:answered\n//log\nINT:0\n")) == 0);
    FUZZ_CHECK(state.settings.misbehaviour.fault == Fault::none);
    return 0;
}
