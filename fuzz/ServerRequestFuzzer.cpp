// Fuzz target for requests to the development server. For every request, its reply is a transfer object that
// can be read. If the reply is an exception, its code is one that clients know. A request adds at most one
// application and one object.
//
// At the start the server has one application (65537) with one object of the class Echo.

#include <unistd.h>

#include <memory>

#include "FuzzTarget.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "client/exceptions/POSException.h"
#include "server/Exchanges.h"

namespace {

using namespace merrowd;

constexpr uint32_t kSession = 65537;

// No fault is set, so the server must never call these functions.
class NoProcess : public ServerProcess {
  public:
    void pause(std::chrono::milliseconds) override { std::abort(); }
    void hang() override { std::abort(); }
    [[noreturn]] void vanish() override { std::abort(); }
};

// Opens the log as a file that has no name any more. A log that is not a regular file goes to standard error.
void openUnnamed(ExchangeLog& log, const std::string& path) {
    log.note("opened");
    FUZZ_CHECK(unlink(path.c_str()) == 0);
}

bool isKnownCode(uint32_t code) {
    if (code == dovrel::kErrorCodeGeneral || code == dovrel::kErrorCodeNoValidInterface) return true;
    return std::unique_ptr<dovrel::CPPException>(dovrel::newPOSExceptionForCode(code, "")) != nullptr;
}

void checkReply(const CPPByteArray& bytes) {
    POSTransferObj reply;
    reply.copyBytesFrom(bytes);
    if (reply.getMessageKind() == dovrel::kMessageKindException) {
        FUZZ_CHECK(!reply.readString(dovrel::posField::kExceptionText).empty());
        FUZZ_CHECK(isKnownCode(reply.readUInt32(dovrel::posField::kExceptionCode)));
        return;
    }
    FUZZ_CHECK(reply.getMessageKind() == kMessageKindReply);
    const POSCommand* command = dovrel::findPOSCommand(reply.getCommand());
    FUZZ_CHECK(command != nullptr);
    for (const POSField& field : command->reply)
        FUZZ_CHECK(reply.hasField(field));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    NoProcess process;
    ServerState state(kSession);
    const std::string path = "/tmp/ServerRequestFuzzer." + std::to_string(getpid());
    ExchangeLog log(path);
    openUnnamed(log, path);
    state.settings.log = true;
    Exchanges exchanges(state, process, log);
    state.applications.add(Application());
    ObjectRecord record;
    record.ofClass = state.classes.find(ServerClass::identifierFromName("Echo"));
    UserMessage message;
    record.object = record.ofClass->instantiate(Caller(), message);
    state.applications.addObject(kSession, std::move(record));

    CPPByteArray request;
    request.set(data, static_cast<uint32_t>(size));
    const Outcome outcome = exchanges.handleData(request, 0);
    FUZZ_CHECK(outcome.parameter != nullptr && outcome.status == 0 && !outcome.endServer);
    checkReply(outcome.parameter->bytes());
    FUZZ_CHECK(state.applications.size() <= 2);
    FUZZ_CHECK(state.applications.objectCount() <= 2);
    return 0;
}
