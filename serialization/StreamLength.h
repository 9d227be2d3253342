// The length of an input stream.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>

namespace dovrel {

/// Clears the state of the stream, positions the stream at its start and returns the number of bytes from
/// there to its end. Returns nothing if the stream cannot be positioned (a pipe, a file that is not open);
/// its fail bit or bad bit is then set. Exceptions that the stream throws pass through.
std::optional<uint64_t> lengthFromStart(std::istream& stream);

}  // namespace dovrel
