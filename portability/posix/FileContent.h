// Whole files. Private to the layer.
#pragma once

#include <optional>
#include <string>

namespace portability {

/// The bytes of the file; nothing when it cannot be read to its end (a file of /proc can vanish while it is
/// open) or holds more than `limit` bytes.
std::optional<std::string> readFile(const std::string& path, std::size_t limit);

}  // namespace portability
