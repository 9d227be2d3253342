// FileSizeLimit: while it exists, no file of this process can grow beyond a size, as on a full disk. A test whose
// code lets SIGXFSZ through ends.
#pragma once

#include <sys/resource.h>

namespace dovrel::test {

class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &oldLimit_);
        rlimit limit = oldLimit_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &oldLimit_); }

  private:
    rlimit oldLimit_{};
};

}  // namespace dovrel::test
