#include "serialization/StreamLength.h"

#include <istream>

namespace dovrel {

std::optional<uint64_t> lengthFromStart(std::istream& stream) {
    // A stream that was read to its end with ">>" has its fail bit set and refuses to be positioned.
    stream.clear();
    stream.seekg(0, std::ios::end);
    const std::streamoff length = stream.tellg();
    stream.seekg(0, std::ios::beg);
    if (length < 0 || !stream) return std::nullopt;
    return static_cast<uint64_t>(length);
}

}  // namespace dovrel
