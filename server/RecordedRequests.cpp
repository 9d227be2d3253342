#include "server/RecordedRequests.h"

#include <memory>
#include <optional>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/CPPException.h"
#include "platform/text/TextConversions.h"

namespace merrowd {

using dovrel::CPPException;
using dovrel::POSTransferObj;
namespace posCommand = dovrel::posCommand;
namespace posField = dovrel::posField;

namespace {

// Whether the reply says which application or object begins or ends. Other replies can be large and are read when
// they are replayed.
bool isReplyNeeded(uint32_t command) {
    return command == posCommand::kRegisterApplication || command == posCommand::kInstantiateObject ||
           command == posCommand::kUnregisterApplication;
}

}  // namespace

ComparedRequest IdentifierMeanings::translate(const RequestKey& key) const {
    ComparedRequest request;
    request.command = key.command;
    request.digest = key.digest;
    const auto application = applications.find(key.session);
    if (application != applications.end()) request.application = application->second;
    const auto object = objects.find({key.session, key.object});
    if (object != objects.end()) request.object = object->second;
    return request;
}

RecordedRequests::RecordedRequests(const Recording& recording) {
    for (size_t i = 0; i < recording.exchanges().size(); ++i)
        add(recording, i);
}

const std::vector<size_t>& RecordedRequests::findSame(const ComparedRequest& request) const {
    static const std::vector<size_t> none;
    const auto exact = places_.find(request);
    if (exact != places_.end()) return exact->second;
    const auto general = generalPlaces_.find(generalize(request));
    return general != generalPlaces_.end() ? general->second : none;
}

ComparedRequest RecordedRequests::generalize(ComparedRequest request) const {
    request.application = firstApplications_[request.application];
    request.object = firstObjects_[request.object];
    return request;
}

void RecordedRequests::add(const Recording& recording, size_t exchange) {
    const RecordedExchange& recorded = recording.exchanges()[exchange];
    const CPPByteArray bytes = recording.read(recorded.request);
    const std::optional<RequestKey> key = RequestKey::fromRequest(bytes);
    if (!key) return;

    RecordedRequest request;
    request.exchange = exchange;
    request.summary = dovrel::requestSummary(bytes);
    request.compared = meanings_.translate(*key);
    if (!recorded.failed && isReplyNeeded(key->command))
        readReply(recording.read(recorded.reply), *key, request);
    places_[request.compared].push_back(all_.size());
    generalPlaces_[generalize(request.compared)].push_back(all_.size());
    all_.push_back(std::move(request));
}

// A reply that cannot be read, or an exception, has no identifiers.
void RecordedRequests::readReply(const CPPByteArray& reply, const RequestKey& key, RecordedRequest& request) {
    try {
        POSTransferObj object;
        object.copyBytesFrom(reply);
        if (object.getMessageKind() == dovrel::kMessageKindException) return;
        if (key.command == posCommand::kRegisterApplication) {
            const uint32_t session = object.readUInt32(posField::kSession);
            request.newApplication = firstApplications_.size();
            meanings_.applications[session] = request.newApplication;
            const ComparedRequest kind = generalize(request.compared);
            firstApplications_.push_back(firstOfKind_.emplace(kind, request.newApplication).first->second);
        } else if (key.command == posCommand::kInstantiateObject) {
            const std::string identifier = dovrel::bytesToText(*object.readByteArray(posField::kObject));
            request.newObject = firstObjects_.size();
            meanings_.objects[{key.session, identifier}] = request.newObject;
            const ComparedRequest kind = generalize(request.compared);
            firstObjects_.push_back(firstOfKind_.emplace(kind, request.newObject).first->second);
        }
        request.endsApplication = key.command == posCommand::kUnregisterApplication;
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
    }
}

}  // namespace merrowd
