// Reads settings texts strictly. People write them by hand, so lines that the properties grammar ignores are
// reported as problems here.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "settings/Properties.h"

namespace merrowd {

/// A section of a settings text, and where its entries are.
struct SettingsSection {
    dovrel::Properties entries;
    std::map<std::string, size_t> lines;  ///< the line of each key, counted from 1

    /// Returns the beginning of a problem with the key: "line 3: ". Returns "" if the section has no such key.
    std::string place(const std::string& key) const;
};

/// Returns the sections of a settings text: one for the entries before the first class, and one
/// for each described class. Each of the following adds a line to `problems` that names its place,
/// and is otherwise ignored:
///
/// - lines that are not part of an entry (blank lines are allowed),
/// - keys without a value, and keys that already have a value in the same section,
/// - values without one of the type words INT, STR and BAR,
/// - INT values that are not a 32-bit number, and BAR values that are not pairs of hexadecimal digits.
std::vector<SettingsSection> readSettingsText(std::string_view text, std::vector<std::string>& problems);

}  // namespace merrowd
