// FileSizeLimit: while it exists, no file of this process can grow beyond a size, as on a full disk.
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
