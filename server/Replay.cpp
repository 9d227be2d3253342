#include "server/Replay.h"

#include <Carbon/Carbon.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/CPPException.h"
#include "serialization/ByteOrder.h"
#include "serialization/StructuredByteArrayReader.h"
#include "server/RequestHandler.h"

namespace merrowd {

using dovrel::CPPException;
using dovrel::POSField;
namespace posField = dovrel::posField;

namespace {

// The status of an exchange that failed in the recording. Hosts treat all statuses alike, except the two that
// mean that the server has gone.
constexpr int16_t kFailedStatus = errAEEventFailed;

void overwriteField(CPPByteArray& block, const POSField& field, const void* data, uint32_t length) {
    dovrel::StructuredByteArrayReader reader;
    reader.initialize(&block);
    const dovrel::ByteView view = reader.viewPart(field);
    if (view.length == length)
        block.writeBytes(static_cast<uint32_t>(view.data - block.data()), data, length);
}

std::string readApplicationName(const CPPByteArray& request) {
    dovrel::StructuredByteArrayReader reader;
    reader.initialize(&request);
    const dovrel::ByteView name = reader.viewPart(posField::kApplicationName);
    // A name ends at its zero byte.
    return std::string(name.data, std::find(name.data, name.data + name.length, 0));
}

}  // namespace

Replay::Replay(Recording recording, ReplayMode mode, ApplicationTable& applications, Note note)
    : recording_(std::move(recording)),
      recorded_(recording_),
      mode_(mode),
      applications_(applications),
      note_(std::move(note)) {}

Outcome Replay::handle(const CPPByteArray& request, pid_t sender) {
    const std::optional<RequestKey> key = RequestKey::fromRequest(request);
    if (!key) return refuse(0, "the bytes are not a request");
    try {
        return replay(*key, request, sender);
    } catch (const Refusal& refusal) {
        return refuse(key->command, refusal.text);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        return refuse(key->command, failure->getMessage());
    }
}

Outcome Replay::replay(const RequestKey& key, const CPPByteArray& request, pid_t sender) {
    const RecordedRequest* const found = find(key);
    if (found == nullptr) return refuse(key.command, describeMismatch(request));
    Outcome outcome = makeOutcome(*found, key, request, sender);
    ++replayed_;
    return outcome;
}

const RecordedRequest* Replay::find(const RequestKey& key) {
    const ComparedRequest request = meanings_.translate(key);
    return mode_ == ReplayMode::inSequence ? findNext(request) : findAny(key, request);
}

const RecordedRequest* Replay::findNext(const ComparedRequest& request) {
    if (next_ == recorded_.all().size() || !(recorded_.all()[next_].compared == request)) return nullptr;
    return &recorded_.all()[next_++];
}

const RecordedRequest* Replay::findAny(const RequestKey& key, const ComparedRequest& request) {
    const std::vector<size_t>& same = recorded_.findSame(request);
    if (same.empty()) return nullptr;
    size_t& position = positions_[{key.session, key.object, same.front()}];
    return &recorded_.all()[same[std::min(position++, same.size() - 1)]];
}

std::string Replay::describeMismatch(const CPPByteArray& request) const {
    const std::string text =
        "the recording does not have this request here: " + dovrel::requestSummary(request);
    if (mode_ == ReplayMode::byRequest) return text;
    if (next_ == recorded_.all().size()) return text + "; all its requests have been replayed";
    return text + "; its next request is: " + recorded_.all()[next_].summary;
}

Outcome Replay::refuse(uint32_t command, const std::string& text) {
    ++refused_;
    note_("replay: " + text);
    Outcome outcome;
    outcome.parameter = RequestHandler::makeExceptionReply(command, {refusalCode::kPOSException, text});
    return outcome;
}

Outcome Replay::makeOutcome(const RecordedRequest& found, const RequestKey& key, const CPPByteArray& request,
                            pid_t sender) {
    Outcome outcome;
    const RecordedExchange& exchange = recording_.exchanges()[found.exchange];
    if (exchange.failed) {
        outcome.status = kFailedStatus;
        return outcome;
    }
    CPPByteArray reply = recording_.read(exchange.reply);
    if (found.newApplication != 0) writeNewSession(found, request, reply, sender);
    if (found.newObject != 0) writeNewObject(found, key, reply);
    if (found.endsApplication) forgetSession(key.session);
    outcome.parameter = std::make_unique<POSTransferObj>();
    outcome.parameter->adoptBytes(std::move(reply));
    return outcome;
}

void Replay::writeNewSession(const RecordedRequest& found, const CPPByteArray& request, CPPByteArray& reply,
                             pid_t sender) {
    Application application;
    application.name = readApplicationName(request);
    application.process = sender;
    forgetGoneSessions();
    const uint32_t session = applications_.add(std::move(application));
    meanings_.applications[session] = found.newApplication;
    std::array<uint8_t, sizeof session> data{};
    dovrel::storeLittleEndian32(data.data(), session);
    overwriteField(reply, posField::kSession, data.data(), data.size());
}

void Replay::writeNewObject(const RecordedRequest& found, const RequestKey& key, CPPByteArray& reply) {
    Identifier identifier{};
    dovrel::storeLittleEndian32(identifier.data(), key.session);
    dovrel::storeLittleEndian32(identifier.data() + sizeof key.session, nextObject_++);
    meanings_.objects[{key.session, std::string(identifier.begin(), identifier.end())}] = found.newObject;
    overwriteField(reply, posField::kObject, identifier.data(), identifier.size());
}

// Hosts that were killed never unregister.
void Replay::forgetGoneSessions() {
    applications_.removeGone();
    std::vector<uint32_t> gone;
    for (const auto& [session, recorded] : meanings_.applications)
        if (!applications_.contains(session)) gone.push_back(session);
    for (const uint32_t session : gone)
        forgetSession(session);
}

void Replay::forgetSession(uint32_t session) {
    if (meanings_.applications.erase(session) == 0) return;
    if (applications_.contains(session)) applications_.remove(session);
    auto& objects = meanings_.objects;
    objects.erase(objects.lower_bound({session, ""}), objects.lower_bound({session + 1, ""}));
    positions_.erase(positions_.lower_bound({session, "", 0}), positions_.lower_bound({session + 1, "", 0}));
}

}  // namespace merrowd
