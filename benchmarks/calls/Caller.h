// Measures single calls and checks their replies.
#pragma once

#include <functional>
#include <vector>

#include "Peer.h"

namespace dovrel::benchmarks {

/// Makes requests and checks their replies. Used by one thread.
class Caller {
  public:
    /// Makes requests of `size` bytes.
    explicit Caller(size_t size);

    /// Makes one call and returns its time in nanoseconds. Every request differs from the one before. After
    /// the time has been taken, the whole reply is compared with the request. Throws std::runtime_error if
    /// they differ.
    ///
    /// `call` is given the request and returns the reply.
    double time(const std::function<Bytes(Bytes)>& call);

  private:
    void numberRequest();

    std::vector<char> request_;
    unsigned number_ = 0;
};

}  // namespace dovrel::benchmarks
