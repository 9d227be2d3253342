// Protects a host from SIGXFSZ. Private to the layer.
#pragma once

#include <signal.h>

namespace portability {

/// While it exists, this thread gets no SIGXFSZ: a system call that would exceed the process's limit of file
/// sizes (RLIMIT_FSIZE) only fails with EFBIG. The system sends this signal to the calling thread, and its
/// default action ends the process. The host's signal actions and the masks of other threads stay as they
/// are. Leaves errno unchanged.
class FileSizeSignalBlock {
  public:
    FileSizeSignalBlock();
    FileSizeSignalBlock(const FileSizeSignalBlock&) = delete;
    FileSizeSignalBlock& operator=(const FileSizeSignalBlock&) = delete;
    ~FileSizeSignalBlock();

  private:
    sigset_t before_;
    bool wasPending_;
};

}  // namespace portability
