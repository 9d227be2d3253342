// The languages that the user prefers. Private to the layer.
#pragma once

#include <CoreFoundation/CFArray.h>

#include <string>
#include <vector>

namespace portability {

/// The language of the locale that the environment chooses for messages ("de" for "de_DE.UTF-8"); empty when
/// it chooses none, or the C locale.
std::string localeLanguage();

/// The user's languages, the most preferred first: the preference "AppleLanguages", see
/// CFPreferencesCopyValue.
std::vector<std::string> userLanguages();

}  // namespace portability
