#include "FailingFstat.h"

#include <sys/stat.h>

#include <cerrno>

namespace {

int callsLeft = 0;  // until one fails; 0 and less: none does any more

bool failsNow() {
    if (callsLeft <= 0 || --callsLeft > 0) return false;
    errno = EIO;
    return true;
}

}  // namespace

FailingFstat::FailingFstat(int number) {
    callsLeft = number;
}

FailingFstat::~FailingFstat() {
    callsLeft = 0;
}

bool FailingFstat::hasFailed() {
    return callsLeft == 0;
}

extern "C" {

// Under the name that the C library has for this width.
int realFstat(int descriptor, struct stat* status) __asm__("__real_" FSTAT_SYMBOL);
int wrappedFstat(int descriptor, struct stat* status) __asm__("__wrap_" FSTAT_SYMBOL);

int wrappedFstat(int descriptor, struct stat* status) {
    return failsNow() ? -1 : realFstat(descriptor, status);
}
}
