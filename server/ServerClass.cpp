#include "server/ServerClass.h"

#include <algorithm>

namespace merrowd {

Identifier ServerClass::identifierFromName(const std::string& name) {
    Identifier identifier{};
    std::copy_n(name.begin(), std::min(name.size(), identifier.size()), identifier.begin());
    return identifier;
}

bool ServerClass::hasMethod(const std::string& name) const {
    const std::vector<std::string> names = methods();
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace merrowd
