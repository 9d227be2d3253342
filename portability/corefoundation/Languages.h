// Finds the user's preferred languages. Private to the layer.
#pragma once

#include <CoreFoundation/CFArray.h>

#include <string>
#include <vector>

namespace portability {

/// Returns the language of the locale that the environment sets for messages ("de" for "de_DE.UTF-8").
/// Returns the empty string if no locale or the C locale is set.
std::string localeLanguage();

/// Returns the user's languages in the order of preference. They are the preference "AppleLanguages";
/// see CFPreferencesCopyValue.
std::vector<std::string> userLanguages();

}  // namespace portability
