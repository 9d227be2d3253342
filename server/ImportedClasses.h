// Describes the classes of a recording, so that a server can offer them without their code.
#pragma once

#include <string>
#include <vector>

#include "server/Recording.h"

namespace merrowd {

/// Returns a settings text with a described class for each class of which the recording has an object. A method
/// returns what it returned in the recording for the same argument. If one object was called several times with
/// the same argument, the results follow in their order. If several objects were, the one with the most calls
/// counts. A call with another argument fails with code 28. Creations follow in their order.
///
/// Calls of a method are left out, and its name adds a line to `problems`, if the name is empty or "instantiate",
/// contains a comma or a control character, or begins or ends with a blank. Throws a new CPPException if a large
/// payload cannot be read.
std::string describeClasses(const Recording& recording, std::vector<std::string>& problems);

}  // namespace merrowd
