#include "portability/transport/EndpointSettings.h"

#include <sys/auxv.h>
#include <unistd.h>

#include <cstring>

namespace portability {

EndpointSettings EndpointSettingsReader::read() {
    static const bool isSecure = getauxval(AT_SECURE) != 0;
    if (isSecure || environ == nullptr) return {};
    if (!isUpToDate()) search();
    return {systemRoot_.value(), runtimeFolder_.value()};
}

bool EndpointSettingsReader::Variable::matches(const char* entry) const {
    return std::strncmp(entry, nameAndSign_.data(), nameAndSign_.size()) == 0;
}

// The functions that change the environment add entries at the end, move the others down when they remove one, and
// may move all of them.
bool EndpointSettingsReader::isUpToDate() const {
    if (environ != environment_ || count_ == 0) return false;
    if (environ[count_] != nullptr || environ[count_ - 1] != last_) return false;
    return systemRoot_.isUpToDate() && runtimeFolder_.isUpToDate();
}

void EndpointSettingsReader::search() {
    environment_ = environ;
    systemRoot_.setEntry(nullptr);
    runtimeFolder_.setEntry(nullptr);
    for (count_ = 0; environ[count_] != nullptr; ++count_) {
        last_ = environ[count_];
        for (Variable* variable : {&systemRoot_, &runtimeFolder_}) {
            if (!variable->hasEntry() && variable->matches(last_)) variable->setEntry(environ + count_);
        }
    }
}

}  // namespace portability
