// FileSizeLimit: while it lives, no file of this process grows beyond a size, as on a disk that is full.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace dovrel::test {

class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &oldLimit_);
        rlimit limit = oldLimit_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &oldLimit_);
        std::signal(SIGXFSZ, oldHandler_);
    }

  private:
    void (*oldHandler_)(int);
    rlimit oldLimit_{};
};

}  // namespace dovrel::test
