// POSApplicationRecord: what the client keeps of one registered application.
#pragma once

#include <string>
#include <vector>

#include "serialization/Identifiers.h"

namespace dovrel {

struct POSApplicationRecord {
    std::string name;                 ///< as the host gave it; failure messages show it
    std::vector<CPPClassID> classes;  ///< in the order of the registration
    bool checksClasses = false;       ///< the server wants instantiations checked against the classes

    /// Whether the application registered the class: its identifier byte by byte.
    bool hasClass(const CPPClassID& classId) const;
};

}  // namespace dovrel
