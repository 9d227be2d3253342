#include "FailingFstat.h"

#include <sys/stat.h>

#include <cerrno>

namespace {

int callsLeft = 0;  // calls until one fails; if 0 or less, none fails

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

// The C library's name of the function depends on the width.
int realFstat(int descriptor, struct stat* status) __asm__("__real_" FSTAT_SYMBOL);
int wrappedFstat(int descriptor, struct stat* status) __asm__("__wrap_" FSTAT_SYMBOL);

int wrappedFstat(int descriptor, struct stat* status) {
    return failsNow() ? -1 : realFstat(descriptor, status);
}
}
