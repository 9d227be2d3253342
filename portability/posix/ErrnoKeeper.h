// Restores errno at the end of a scope, for functions that must not change it. Private to the layer.
#pragma once

#include <cerrno>

namespace portability {

class ErrnoKeeper {
  public:
    ErrnoKeeper() = default;
    ErrnoKeeper(const ErrnoKeeper&) = delete;
    ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;
    ~ErrnoKeeper() { errno = kept_; }

  private:
    const int kept_ = errno;
};

}  // namespace portability
