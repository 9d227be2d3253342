#include "InterProcessCommunication/TracingForwarder.h"

#include <utility>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/CPPException.h"
#include "platform/Environment.h"
#include "platform/trace/TraceText.h"

namespace dovrel {

namespace {

constexpr char kTraceVariable[] = "POS_TRACE";
constexpr char kRequestMark[] = "> ";
constexpr char kReplyMark[] = "< ";

/// The outcome of an exchange, without any of its contents.
struct Outcome {
    TraceLevel level;
    std::string text;
};

// Reads a copy, because the caller must receive a reply that has not been read yet.
Outcome makeOutcome(const CPPByteArray& reply) {
    POSTransferObj copy;
    copy.copyBytesFrom(reply);
    try {
        if (copy.getMessageKind() != kMessageKindException) return {TraceLevel::kSteps, "answered"};
        return {TraceLevel::kFailures, "error " + errorCodeText(copy.readUInt32(posField::kExceptionCode))};
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        return {TraceLevel::kFailures, "an answer that cannot be read"};
    }
}

std::string sizeText(const CPPByteArray& bytes) {
    return ", " + std::to_string(bytes.getSize()) + " bytes";
}

/// Returns the fields, each on a line of its own below the entry's first line; "" if contents are not traced.
std::string contentsText(const CPPByteArray& bytes, const char* mark) {
    if (!Trace::wants(TraceArea::kExchange, TraceLevel::kContents)) return "";
    std::string lines = "\n" + transferObjText(bytes, mark);
    lines.pop_back();
    return lines;
}

// Asks for the bytes of the request only if the entry is written: they may have to be encoded first.
void writeRequest(const POSTransferObj& request) {
    Trace::write(TraceArea::kExchange, TraceLevel::kSteps, [&] {
        const CPPByteArray& bytes = request.bytes();
        return readCommandName(bytes) + sizeText(bytes) + contentsText(bytes, kRequestMark);
    });
}

void writeReply(const POSTransferObj& request, const CPPByteArray& reply, const TraceTimer& timer) {
    Trace::write(TraceArea::kExchange, TraceLevel::kFailures, [&]() -> std::string {
        const Outcome outcome = makeOutcome(reply);
        if (!Trace::wants(TraceArea::kExchange, outcome.level)) return "";
        return readCommandName(request.bytes()) + ": " + outcome.text + sizeText(reply) + ", " +
               timer.text() + contentsText(reply, kReplyMark);
    });
}

/// Does not take ownership, because the caller rethrows the failure.
template <typename MakeTitle>
void writeFailure(TraceArea area, const MakeTitle& makeTitle, const CPPException& passing,
                  const TraceTimer& timer) {
    Trace::write(area, TraceLevel::kFailures, [&] {
        const char* const message = passing.getMessage();
        return makeTitle() + ": failed, " + timer.text() + ": " +
               traceValueText(message != nullptr ? message : "");
    });
}

}  // namespace

TracingForwarder::TracingForwarder(std::unique_ptr<POSTransferObjForwarder> traced,
                                   const std::string& setting)
    : trace_(setting), traced_(std::move(traced)) {}

TracingForwarder::~TracingForwarder() = default;

POSTransferObj* TracingForwarder::ForwardTransferObj(POSTransferObj& request) {
    const TraceTimer timer;
    writeRequest(request);
    try {
        POSTransferObj* const reply = traced_->ForwardTransferObj(request);
        writeReply(request, reply->bytes(), timer);
        return reply;
    } catch (const CPPException* passing) {
        writeFailure(
            TraceArea::kExchange, [&] { return readCommandName(request.bytes()); }, *passing, timer);
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

std::unique_ptr<POSTransferObjForwarder> traceIfRequested(
    std::unique_ptr<POSTransferObjForwarder> forwarder) {
    const std::string setting = environmentVariable(kTraceVariable);
    if (setting.empty()) return forwarder;
    return std::make_unique<TracingForwarder>(std::move(forwarder), setting);
}

}  // namespace dovrel
