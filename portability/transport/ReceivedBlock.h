// Memory that another process shows us. Private to the layer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// A peer's shared-memory file, mapped for reading. The peer may change its content at any time, but not its
/// size.
class ReceivedBlock {
  public:
    /// Maps the file. Null unless it is a sealed shared-memory file of `smallest` to `largest` bytes.
    /// Allocates no memory for its content.
    static std::shared_ptr<const ReceivedBlock> map(FileDescriptor file, size_t smallest, size_t largest);

    ReceivedBlock(const ReceivedBlock&) = delete;
    ReceivedBlock& operator=(const ReceivedBlock&) = delete;
    ~ReceivedBlock();

    const uint8_t* data() const { return data_; }
    size_t size() const { return size_; }

  private:
    ReceivedBlock(const uint8_t* data, size_t size) : data_(data), size_(size) {}

    const uint8_t* data_;
    size_t size_;
};

}  // namespace portability
