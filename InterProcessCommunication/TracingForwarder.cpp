#include "InterProcessCommunication/TracingForwarder.h"

#include <utility>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/CPPException.h"
#include "platform/Environment.h"

namespace dovrel {

namespace {

constexpr char kTraceVariable[] = "POS_TRACE";
constexpr char kRequestMark[] = "    > ";
constexpr char kAnswerMark[] = "    < ";

/// How an exchange ended, without anything that was said in it.
struct Ending {
    TraceLevel level;
    std::string text;
};

// Read from a copy: who asked is still to read the answer itself.
Ending endingOf(const CPPByteArray& answer) {
    POSTransferObj copy;
    copy.copyBytesFrom(answer);
    try {
        if (copy.getMessageKind() != kMessageKindException) return {TraceLevel::kSteps, "answered"};
        const uint32_t code = copy.readUInt32(posField::kExceptionCode);
        return {TraceLevel::kFailures, "error " + std::to_string(code)};
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        return {TraceLevel::kFailures, "an answer that cannot be read"};
    }
}

std::string sizeOf(const CPPByteArray& bytes) {
    return ", " + std::to_string(bytes.getSize()) + " bytes";
}

/// The fields, each on a line of its own behind the one that is begun.
std::string contentsOf(const CPPByteArray& bytes, const char* mark) {
    if (!Trace::wants(TraceArea::kExchange, TraceLevel::kContents)) return "";
    std::string lines = "\n" + transferObjText(bytes, mark);
    lines.pop_back();
    return lines;
}

void writeRequest(const CPPByteArray& request) {
    Trace::write(TraceArea::kExchange, TraceLevel::kSteps, [&] {
        return commandNameOf(request) + sizeOf(request) + contentsOf(request, kRequestMark);
    });
}

void writeAnswer(const CPPByteArray& request, const CPPByteArray& answer, const TraceTimer& timer) {
    Trace::write(TraceArea::kExchange, TraceLevel::kFailures, [&]() -> std::string {
        const Ending ending = endingOf(answer);
        if (!Trace::wants(TraceArea::kExchange, ending.level)) return "";
        return commandNameOf(request) + ": " + ending.text + sizeOf(answer) + ", " + timer.text() +
               contentsOf(answer, kAnswerMark);
    });
}

/// The failure passes on; it is not taken over here.
template <typename MakeTitle>
void writeFailure(TraceArea area, const MakeTitle& makeTitle, const CPPException& passing,
                  const TraceTimer& timer) {
    Trace::write(area, TraceLevel::kFailures, [&] {
        const char* const message = passing.getMessage();
        return makeTitle() + ": failed, " + timer.text() + ": " + (message != nullptr ? message : "");
    });
}

}  // namespace

TracingForwarder::TracingForwarder(std::unique_ptr<POSTransferObjForwarder> traced,
                                   const std::string& setting)
    : trace_(setting), traced_(std::move(traced)) {}

TracingForwarder::~TracingForwarder() = default;

POSTransferObj* TracingForwarder::ForwardTransferObj(POSTransferObj& request) {
    const TraceTimer timer;
    writeRequest(request.bytes());
    try {
        POSTransferObj* const answer = traced_->ForwardTransferObj(request);
        writeAnswer(request.bytes(), answer->bytes(), timer);
        return answer;
    } catch (const CPPException* passing) {
        writeFailure(
            TraceArea::kExchange, [&] { return commandNameOf(request.bytes()); }, *passing, timer);
        throw;
    }
}

void TracingForwarder::ConnectToPOS(uint32_t hint) {
    const TraceTimer timer;
    try {
        traced_->ConnectToPOS(hint);
    } catch (const CPPException* passing) {
        writeFailure(
            TraceArea::kConnection, [] { return std::string("connect"); }, *passing, timer);
        throw;
    }
    Trace::write(TraceArea::kConnection, TraceLevel::kSteps, [&] { return "connect: " + timer.text(); });
}

void TracingForwarder::CheckConnection() {
    traced_->CheckConnection();
    Trace::write(TraceArea::kConnection, TraceLevel::kSteps, [] { return std::string("checked"); });
}

CPPByteArray TracingForwarder::GetClientProcessID() {
    return traced_->GetClientProcessID();
}

std::unique_ptr<POSTransferObjForwarder> tracedAsAsked(std::unique_ptr<POSTransferObjForwarder> forwarder) {
    const std::string setting = environmentVariable(kTraceVariable);
    if (setting.empty()) return forwarder;
    return std::make_unique<TracingForwarder>(std::move(forwarder), setting);
}

}  // namespace dovrel
