#include "serialization/StreamLength.h"

#include <istream>

namespace dovrel {

std::optional<uint64_t> lengthFromStart(std::istream& stream) {
    // After a read to the end with ">>" the fail bit is set, and then the stream cannot be positioned.
    stream.clear();
    stream.seekg(0, std::ios::end);
    const std::streamoff length = stream.tellg();
    stream.seekg(0, std::ios::beg);
    if (length < 0 || !stream) return std::nullopt;
    return static_cast<uint64_t>(length);
}

}  // namespace dovrel
