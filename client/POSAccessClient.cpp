#include "client/POSAccessClient.h"

#include <algorithm>
#include <utility>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "client/OperationResult.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

bool POSApplicationRecord::hasClass(const CPPClassID& classId) const {
    return std::any_of(classes.begin(), classes.end(),
                       [&classId](const CPPClassID& registered) { return registered.compare(classId) == 0; });
}

POSAccessClient::POSAccessClient() : trader_(std::make_unique<POSTransferObjTrader>()) {}

const char* POSAccessClient::applicationName(uint32_t applicationId) const {
    const auto found = applications_.find(applicationId);
    return found != applications_.end() ? found->second.name.c_str() : kUnknownApplication;
}

POSResult<uint32_t> POSAccessClient::registerApplication(const char* name, std::vector<CPPClassID> classes,
                                                         const CPPByteArray& options) {
    // All memory is allocated before the request is sent, because nothing may fail after the server has
    // registered the application.
    Applications pending;
    POSApplicationRecord& record = pending[0];
    record.name = name;
    record.classes = std::move(classes);

    const POSResult<POSRegistration> registered =
        trader_->registerApplication(record.name, record.classes, options);
    if (registered.outcome != POSOutcome::kDone) return {registered.outcome, 0};
    record.checksClasses = registered.value.checksClasses;

    const uint32_t applicationId = registered.value.applicationId;
    auto node = pending.extract(pending.begin());
    node.key() = applicationId;
    applications_.erase(applicationId);
    applications_.insert(std::move(node));
    return {POSOutcome::kDone, applicationId};
}

POSOutcome POSAccessClient::unregisterApplication(uint32_t applicationId) {
    const POSOutcome outcome = trader_->unregisterApplication(applicationId);
    if (outcome == POSOutcome::kDone) applications_.erase(applicationId);
    return outcome;
}

POSResult<POSInstance> POSAccessClient::instantiateObject(uint32_t applicationId, const CPPClassID& classId,
                                                          uint32_t executer) {
    checkClass(applicationId, classId, executer);
    return trader_->instantiateObject(applicationId, classId, executer);
}

void POSAccessClient::checkClass(uint32_t applicationId, const CPPClassID& classId, uint32_t executer) const {
    const auto found = applications_.find(applicationId);
    if (executer != kNoExecuter || found == applications_.end() || !found->second.checksClasses) return;
    if (!found->second.hasClass(classId)) {
        throw new CPPException(MultiLanguageSupport::getText(kDllClassNotRegistered).c_str());
    }
}

POSResult<ByteBlock> POSAccessClient::getInformation(uint32_t applicationId, const GetInfoCommand& request) {
    if (request.asksForInterfaceVersion())
        return {POSOutcome::kDone, GetInfoCommand::makeInterfaceVersionBlock()};
    return trader_->getInformation(applicationId, request.bytes());
}

void POSAccessClient::disconnectIfUnused() noexcept {
    if (!applications_.empty()) return;
    ignoringFailures([this] { trader_->getForwarder()->CheckConnection(); });
}

void POSAccessClient::shutDown() noexcept {
    if (applications_.empty()) return;
    ignoringFailures([this] { unregisterAll(); });
}

void POSAccessClient::unregisterAll() {
    trader_->getForwarder()->ConnectToPOS(kConnectHint);
    for (auto next = applications_.begin(); next != applications_.end();) {
        const uint32_t applicationId = (next++)->first;
        unregisterApplication(applicationId);
    }
}

}  // namespace dovrel
