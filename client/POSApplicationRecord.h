// POSApplicationRecord: the client's record of one registered application.
#pragma once

#include <string>
#include <vector>

#include "serialization/Identifiers.h"

namespace dovrel {

struct POSApplicationRecord {
    std::string name;                 ///< the name that the host passed; failure messages show it
    std::vector<CPPClassID> classes;  ///< in the order of registration
    bool checksClasses = false;       ///< the server wants instantiations checked against `classes`

    /// Returns whether the application registered the class. Compares the identifiers byte by byte.
    bool hasClass(const CPPClassID& classId) const;
};

}  // namespace dovrel
