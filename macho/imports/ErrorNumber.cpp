#include "macho/imports/ErrorNumber.h"

#include <cerrno>
#include <utility>

namespace dovrel::macho {

namespace {

// All numbers up to 34 are the same, except 11: EAGAIN on this system, EDEADLK on macOS.
constexpr std::pair<int, int> kDifferent[] = {
    {EDEADLK, 11},     {EAGAIN, 35},     {EINPROGRESS, 36},  {EALREADY, 37},  {ENOTSOCK, 38},
    {EOPNOTSUPP, 102}, {EADDRINUSE, 48}, {ECONNRESET, 54},   {ETIMEDOUT, 60}, {ECONNREFUSED, 61},
    {EDQUOT, 69},      {ELOOP, 62},      {ENAMETOOLONG, 63}, {ENOTEMPTY, 66}, {ENOSYS, 78},
    {EOVERFLOW, 84},   {ECANCELED, 89},  {EILSEQ, 92},
};

// This value is not an error number. As long as errno has it, no call has failed since the last conversion.
constexpr int kSeen = 0x7A7A7A;

}  // namespace

int platformErrorNumber(int systemNumber) {
    for (const auto& [here, there] : kDifferent) {
        if (here == systemNumber) return there;
    }
    return systemNumber;
}

// An image also writes through the pointer, to set errno to 0 before a call. The value in `number` must
// therefore stay until a call fails.
int* errorNumber() {
    static thread_local int number = 0;
    if (errno != kSeen) {
        number = platformErrorNumber(errno);
        errno = kSeen;
    }
    return &number;
}

}  // namespace dovrel::macho
