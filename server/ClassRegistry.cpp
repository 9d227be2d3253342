#include "server/ClassRegistry.h"

#include <algorithm>
#include <set>
#include <utility>

namespace merrowd {

void ClassRegistry::add(std::shared_ptr<const ServerClass> described) {
    for (std::shared_ptr<const ServerClass>& known : described_) {
        if (known->identifier() != described->identifier()) continue;
        known = std::move(described);
        return;
    }
    described_.push_back(std::move(described));
}

std::shared_ptr<const ServerClass> ClassRegistry::find(const Identifier& identifier) const {
    for (const std::shared_ptr<const ServerClass>& described : described_) {
        if (described->identifier() == identifier) return described;
    }
    for (const ServerClass* builtIn : builtInClasses()) {
        // Built-in classes live as long as the process, so this pointer does not own the class.
        if (builtIn->identifier() == identifier) return {std::shared_ptr<const ServerClass>(), builtIn};
    }
    return nullptr;
}

std::vector<std::string> ClassRegistry::names() const {
    std::set<std::string> names;
    for (const std::shared_ptr<const ServerClass>& described : described_)
        names.insert(described->name());
    for (const ServerClass* builtIn : builtInClasses()) {
        if (find(builtIn->identifier()).get() == builtIn) names.insert(builtIn->name());
    }
    return {names.begin(), names.end()};
}

std::vector<const ServerClass*>& ClassRegistry::builtInClasses() {
    static std::vector<const ServerClass*> classes;
    return classes;
}

}  // namespace merrowd
