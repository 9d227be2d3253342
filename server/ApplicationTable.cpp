#include "server/ApplicationTable.h"

#include <signal.h>

#include <cerrno>
#include <iterator>
#include <utility>

namespace merrowd {

namespace {

// Clients use this number for "no application".
constexpr uint32_t kNoApplication = 0xFFFFFFFF;

void storeNumber(Identifier& identifier, size_t offset, uint32_t number) {
    for (size_t i = 0; i < sizeof number; ++i)
        identifier[offset + i] = static_cast<uint8_t>(number >> (8 * i));
}

Identifier objectIdentifier(uint32_t applicationId, uint32_t number) {
    Identifier identifier{};
    storeNumber(identifier, 0, applicationId);
    storeNumber(identifier, 4, number);
    return identifier;
}

bool hasGone(pid_t process) {
    return process != 0 && kill(process, 0) != 0 && errno == ESRCH;
}

}  // namespace

uint32_t ApplicationTable::add(Application application) {
    if (applications_.size() >= kMostApplications) {
        throw Refusal{refusalCode::kPOSRegistration, "too many applications are registered"};
    }
    while (nextApplication_ == 0 || nextApplication_ == kNoApplication ||
           applications_.count(nextApplication_) > 0) {
        ++nextApplication_;
    }
    applications_.emplace(nextApplication_, std::move(application));
    return nextApplication_++;
}

Application& ApplicationTable::find(uint32_t id) {
    const auto found = applications_.find(id);
    if (found == applications_.end()) {
        throw Refusal{refusalCode::kPOSApplicationNotRegistered,
                      "no application is registered as " + std::to_string(id)};
    }
    return found->second;
}

void ApplicationTable::remove(uint32_t id) {
    find(id);
    applications_.erase(id);
}

Identifier ApplicationTable::addObject(uint32_t applicationId, ObjectRecord record) {
    Application& application = find(applicationId);
    if (application.objects.size() >= kMostObjects) {
        throw Refusal{refusalCode::kPOSObjectInstantiation, "the application has too many objects"};
    }
    Identifier id = objectIdentifier(applicationId, nextObject_);
    while (application.objects.count(id) > 0)
        id = objectIdentifier(applicationId, ++nextObject_);
    ++nextObject_;
    application.objects.emplace(id, std::move(record));
    return id;
}

ObjectRecord& ApplicationTable::findObject(uint32_t applicationId, const Identifier& id) {
    std::map<Identifier, ObjectRecord>& objects = find(applicationId).objects;
    const auto found = objects.find(id);
    if (found == objects.end()) {
        throw Refusal{refusalCode::kPOSObjectNotFound, "the application has no such object"};
    }
    return found->second;
}

void ApplicationTable::removeObject(uint32_t applicationId, const Identifier& id) {
    findObject(applicationId, id);
    find(applicationId).objects.erase(id);
}

void ApplicationTable::removeGone() {
    for (auto at = applications_.begin(); at != applications_.end();) {
        at = hasGone(at->second.process) ? applications_.erase(at) : std::next(at);
    }
}

size_t ApplicationTable::objectCount() const {
    size_t count = 0;
    for (const auto& entry : applications_)
        count += entry.second.objects.size();
    return count;
}

}  // namespace merrowd
