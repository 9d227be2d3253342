#include "server/ServerClass.h"

#include <algorithm>

namespace merrowd {

Identifier ServerClass::identifierFromName(const std::string& name) {
    Identifier identifier{};
    std::copy_n(name.begin(), std::min(name.size(), identifier.size()), identifier.begin());
    return identifier;
}

}  // namespace merrowd
