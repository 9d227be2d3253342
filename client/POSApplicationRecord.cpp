#include "client/POSApplicationRecord.h"

#include <algorithm>

namespace dovrel {

bool POSApplicationRecord::hasClass(const CPPClassID& classId) const {
    return std::any_of(classes.begin(), classes.end(),
                       [&classId](const CPPClassID& registered) { return registered.compare(classId) == 0; });
}

}  // namespace dovrel
