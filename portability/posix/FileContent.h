// Reads whole files. Private to the layer.
#pragma once

#include <optional>
#include <string>

namespace portability {

/// Returns the bytes of the file. Returns nothing if the file holds more than `limit` bytes or cannot be read
/// to its end. (A file in /proc can disappear while it is open.)
std::optional<std::string> readFile(const std::string& path, std::size_t limit);

}  // namespace portability
