// The alert helper's own texts, in the user's language.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace alerthelper {

/// Returns the name of the Help button. The text is valid until the process exits.
const char* helpCaption();

/// Returns the caption of a button. If the host could not find its texts, the caption is empty. In that case,
/// returns GTK's text for Cancel for the last of several buttons, and GTK's text for OK for the others.
std::string captionOrStandard(const std::vector<std::string>& captions, size_t index);

}  // namespace alerthelper
