#include "portability/posix/MainThread.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace portability {

bool isMainThread() {
    return syscall(SYS_gettid) == getpid();
}

}  // namespace portability
