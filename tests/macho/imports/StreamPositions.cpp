#include "tests/macho/imports/StreamPositions.h"

#include "tests/macho/imports/StandardLibrary.h"

namespace dovrel::macho {

namespace {

enum State : uint32_t { kBad = 1, kEnd = 2, kFailed = 4 };
constexpr unsigned kForReading = 8;
constexpr int kFromCurrent = 1;

// std::ios_base, as far as the stream buffer.
struct StreamBase {
    const void* functions;
    uint32_t format;
    long precision;
    long width;
    uint32_t state;
    uint32_t exceptions;
    void* buffer;
};

// A stream finds its virtual base by a distance that stands before its virtual functions.
StreamBase& baseOf(void* stream) {
    const long* const functions = *static_cast<long**>(stream);
    return *reinterpret_cast<StreamBase*>(static_cast<char*>(stream) + functions[-3]);
}

// The buffer's seekoff, the fifth of its virtual functions.
PlatformPosition seek(void* buffer, int64_t distance, int from) {
    using Seek = PlatformPosition (*)(void*, int64_t, int, unsigned);
    const auto* const functions = *static_cast<const Seek**>(buffer);
    return functions[4](buffer, distance, from, kForReading);
}

// Throws where the stream was told to.
void setFailed(StreamBase& base) {
    using Clear = void (*)(void*, unsigned);
    static const auto clear = reinterpret_cast<Clear>(standardLibrarySymbol("_ZNSt3__18ios_base5clearEj"));
    clear(&base, base.state | kFailed);
}

bool isUsable(const StreamBase& base) {
    return (base.state & (kBad | kFailed)) == 0;
}

}  // namespace

PlatformPosition platformTellg(void* stream) {
    PlatformPosition position{};
    position.offset = -1;
    const StreamBase& base = baseOf(stream);
    return isUsable(base) ? seek(base.buffer, 0, kFromCurrent) : position;
}

void* platformSeekg(void* stream, int64_t distance, int from) {
    StreamBase& base = baseOf(stream);
    base.state &= ~uint32_t{kEnd};
    if (isUsable(base) && seek(base.buffer, distance, from).offset == -1) setFailed(base);
    return stream;
}

}  // namespace dovrel::macho
