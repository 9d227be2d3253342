// Keeps errno from being changed by a call that does not report by it. Private to the layer.
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
