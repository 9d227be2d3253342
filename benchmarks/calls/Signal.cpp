#include "Signal.h"

#include <fcntl.h>
#include <unistd.h>

#include "UnixSockets.h"

namespace dovrel::benchmarks {

Signal::Signal() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw systemError("pipe");
    read_ = ends[0];
    write_ = ends[1];
}

Signal::~Signal() {
    onlyGive();
    onlyWait();
}

void Signal::give() {
    const char byte = 0;
    if (write(write_, &byte, 1) != 1) throw systemError("write");
}

bool Signal::wait() {
    char byte = 0;
    return read(read_, &byte, 1) == 1;
}

void Signal::onlyGive() {
    if (read_ >= 0) close(read_);
    read_ = -1;
}

void Signal::onlyWait() {
    if (write_ >= 0) close(write_);
    write_ = -1;
}

}  // namespace dovrel::benchmarks
