#include "platform/RandomSource.h"

#include "platform/Clock.h"
#include "platform/MD5Random.h"
#include "platform/StdLibRandom.h"

namespace dovrel {

namespace {

MD5Random md5Random;
StdLibRandom stdLibRandom;
BaseRandom* source = &md5Random;

}  // namespace

void selectRandomSource(bool useMD5) {
    source = useMD5 ? static_cast<BaseRandom*>(&md5Random) : &stdLibRandom;
}

void seedRandom(uint32_t value) {
    source->seed(value);
}

uint32_t nextRandomBit() {
    return source->nextBit();
}

uint32_t nextRandom32() {
    return source->next32();
}

void seedFromTime() {
    seedRandom(static_cast<uint32_t>(currentTime()));
}

}  // namespace dovrel
