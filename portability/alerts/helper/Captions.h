// Texts of the alert helper's own, in the user's language.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace alerthelper {

/// The name of the Help button. Lives as long as the process.
const char* helpCaption();

/// The caption of a button. If it is empty, as with a host that has lost its texts, GTK's own word for Cancel
/// (the last of several buttons) or OK.
std::string captionOrStandard(const std::vector<std::string>& captions, size_t index);

}  // namespace alerthelper
