// Reads settings texts strictly: people write them by hand, so what the properties grammar would pass over in
// silence is a problem here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/Properties.h"

namespace merrowd {

/// The sections of a settings text, one for each described class and one for the entries in front of them.
/// Each of the following gets a line in `problems` that names its place, and changes nothing:
///
/// - lines that are not part of an entry (blank lines are not a problem),
/// - keys without a value, and keys that have a value already in the same section,
/// - values without one of the type words INT, STR and BAR,
/// - INT values that are not a number of 32 bits, BAR values that are not pairs of hexadecimal digits.
std::vector<dovrel::Properties> readSettingsText(std::string_view text, std::vector<std::string>& problems);

}  // namespace merrowd
