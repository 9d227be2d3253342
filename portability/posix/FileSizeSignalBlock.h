// Protects a host from SIGXFSZ. Private to the layer.
#pragma once

#include <signal.h>

namespace portability {

/// The system sends SIGXFSZ to a thread whose system call would exceed the process's limit of file sizes
/// (RLIMIT_FSIZE), and the default action ends the process. While this object exists, the thread that created
/// it does not receive the signal, and the system call only fails with EFBIG. The host's signal actions and
/// the masks of other threads do not change. Leaves errno unchanged.
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
