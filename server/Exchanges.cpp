#include "server/Exchanges.h"

#include <algorithm>
#include <utility>

#include "InterProcessCommunication/TransferObjText.h"
#include "server/PartCount.h"

namespace merrowd {

using dovrel::POSCommand;
using dovrel::POSField;
using dovrel::readCommandCode;
using dovrel::readCommandName;
namespace posField = dovrel::posField;

namespace {

constexpr char kHandshakeReply[] = "awake";
constexpr char kGarbage[] = "This is not a reply, and it does not look like one.";
constexpr uint8_t kHugeFill = 0x5A;

// Returns a copy of a normal reply with other data in the field. Returns the reply unchanged if it does not
// have the field or is not a normal reply.
std::unique_ptr<POSTransferObj> withField(std::unique_ptr<POSTransferObj> reply, const POSField& field,
                                          const CPPByteArray& data) {
    const POSCommand* command = dovrel::findPOSCommand(reply->getCommand());
    if (command == nullptr || reply->getMessageKind() != kMessageKindReply || !reply->hasField(field))
        return reply;
    auto changed =
        std::make_unique<POSTransferObj>(dovrel::kTransferKindStandard, kMessageKindReply, *command);
    for (const POSField& known : command->reply) {
        if (known.number == field.number) {
            changed->writeByteArray(known, data);
        } else {
            changed->writeByteArray(known, *reply->readByteArray(known));
        }
    }
    return changed;
}

std::string fromProcess(pid_t sender) {
    return sender == 0 ? std::string() : ", from process " + std::to_string(sender);
}

}  // namespace

Exchanges::Exchanges(ServerState& state, ServerProcess& process, ExchangeLog& log)
    : state_(state),
      process_(process),
      log_(log),
      handler_(state, [&log](const std::string& text) { log.note(text); }) {}

Outcome Exchanges::handleData(CPPByteArray request, pid_t sender) {
    lastRequest_ = std::chrono::steady_clock::now();
    // The log and the misbehaviour read requests as well, so this is checked first.
    if (hasMorePartsThan(kMostRequestParts, request)) return refuseParts(sender);
    Misbehaviour& misbehaviour = state_.settings.misbehaviour;
    if (state_.settings.log) log_.request(readCommandName(request) + fromProcess(sender), request);
    const bool strikes = misbehaviour.fault != Fault::none && misbehaviour.strikes(readCommandCode(request));
    Outcome outcome =
        strikes ? handleWithFault(std::move(request), sender) : handleNormally(std::move(request), sender);
    outcome.endServer = outcome.endServer || hasLostLastClient();
    if (state_.settings.log) logEnd(outcome);
    return outcome;
}

Outcome Exchanges::refuseParts(pid_t sender) {
    const std::string limit = std::to_string(kMostRequestParts);
    if (state_.settings.log)
        log_.note("a request with more than " + limit + " parts was refused" + fromProcess(sender));
    Outcome outcome;
    outcome.parameter = RequestHandler::makeExceptionReply(
        0, {refusalCode::kPOSParameterFormat, "the request has more than " + limit + " parts"});
    return outcome;
}

Outcome Exchanges::handleNormally(CPPByteArray request, pid_t sender) {
    if (state_.replay != nullptr) return state_.replay->handle(request, sender);
    Outcome outcome;
    outcome.parameter = handler_.handle(std::move(request), sender);
    return outcome;
}

Outcome Exchanges::handleWithFault(CPPByteArray request, pid_t sender) {
    const Misbehaviour& misbehaviour = state_.settings.misbehaviour;
    Outcome outcome;
    switch (misbehaviour.fault) {
        case Fault::late:
            process_.pause(misbehaviour.delay);
            break;
        case Fault::silent:
            process_.hang();
            outcome.isSilent = true;
            return outcome;
        case Fault::vanishBefore:
            process_.vanish();
            return outcome;
        case Fault::failedEvent:
            outcome.status = misbehaviour.eventStatus;
            return outcome;
        case Fault::error:
            outcome.parameter = RequestHandler::makeExceptionReply(
                readCommandCode(request), {misbehaviour.errorCode, misbehaviour.errorText});
            return outcome;
        default:
            break;
    }
    outcome = handleNormally(std::move(request), sender);
    if (outcome.parameter != nullptr) applyFault(outcome);
    return outcome;
}

void Exchanges::applyFault(Outcome& outcome) {
    const Misbehaviour& misbehaviour = state_.settings.misbehaviour;
    const CPPByteArray& reply = outcome.parameter->bytes();
    CPPByteArray data;
    switch (misbehaviour.fault) {
        case Fault::vanishDuring:
            process_.vanish();
            return;
        case Fault::vanishAfter:
            outcome.endServer = outcome.vanish = true;
            return;
        case Fault::cut:
            outcome.parameter = makeParameter(reply.data(), std::min(reply.getSize(), misbehaviour.cutTo));
            return;
        case Fault::garbage:
            outcome.parameter = makeParameter(kGarbage);
            return;
        case Fault::empty:
            outcome.parameter = makeParameter("");
            return;
        case Fault::noParameter:
            outcome.parameter = nullptr;
            return;
        case Fault::message:
            data = toBytes(bytesToText(numberToBytes(misbehaviour.messageFlags)) + misbehaviour.messageText);
            outcome.parameter = withField(std::move(outcome.parameter), posField::kServerMessage, data);
            return;
        case Fault::huge:
            data.setFilled(misbehaviour.hugeSize, kHugeFill);
            outcome.parameter = withField(std::move(outcome.parameter), posField::kResult, data);
            outcome.parameter = withField(std::move(outcome.parameter), posField::kInformation, data);
            return;
        default:
            return;
    }
}

void Exchanges::logEnd(const Outcome& outcome) {
    if (outcome.parameter == nullptr) return log_.reply("not answered", {});
    log_.reply(outcome.vanish ? "answered, and gone" : "answered", outcome.parameter->bytes());
}

Outcome Exchanges::handleHandshake(pid_t sender) {
    lastRequest_ = std::chrono::steady_clock::now();
    if (state_.settings.log) log_.note("handshake" + fromProcess(sender));
    Outcome outcome;
    switch (state_.settings.handshake) {
        case Handshake::answered:
            outcome.parameter = makeParameter(kHandshakeReply);
            break;
        case Handshake::silent:
            process_.hang();
            outcome.isSilent = true;
            break;
        case Handshake::empty:
            outcome.parameter = makeParameter("");
            break;
        case Handshake::noParameter:
            break;
    }
    return outcome;
}

bool Exchanges::hasNoMoreClients() {
    state_.applications.removeGone();
    return hasLostLastClient() || hasWaitedInVain();
}

// During a replay the server waits for the question how many requests were replayed.
bool Exchanges::mayEnd() const {
    return state_.settings.endWithLastClient && state_.replay == nullptr;
}

bool Exchanges::hasLostLastClient() {
    if (state_.applications.size() > 0) hadClient_ = true;
    return mayEnd() && hadClient_ && state_.applications.size() == 0;
}

// A server is also launched for hosts that never register, and for hosts that have gone before it was ready.
bool Exchanges::hasWaitedInVain() const {
    return mayEnd() && state_.applications.size() == 0 &&
           std::chrono::steady_clock::now() - lastRequest_ >= state_.settings.waitForClient;
}

}  // namespace merrowd
