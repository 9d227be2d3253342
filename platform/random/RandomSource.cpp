#include "platform/random/RandomSource.h"

#include "platform/random/MD5Random.h"
#include "platform/random/StdLibRandom.h"
#include "platform/time/Clock.h"

namespace dovrel {

namespace {

bool usesMD5 = true;

/// Never destroyed, because exit handlers of the host may run after the library's destructors.
template <class Source>
BaseRandom& immortal() {
    static Source& instance = *new Source;
    return instance;
}

BaseRandom& selectedSource() {
    return usesMD5 ? immortal<MD5Random>() : immortal<StdLibRandom>();
}

}  // namespace

void selectRandomSource(bool useMD5) {
    usesMD5 = useMD5;
}

void seedRandom(uint32_t value) {
    selectedSource().seed(value);
}

uint32_t nextRandomBit() {
    return selectedSource().nextBit();
}

uint32_t nextRandom32() {
    return selectedSource().next32();
}

void seedFromTime() {
    seedRandom(static_cast<uint32_t>(currentTime()));
}

}  // namespace dovrel
