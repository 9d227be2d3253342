// Shared memory of another process. Private to the layer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// A peer's shared-memory file, mapped read-only. The peer may change the content at any time, but not
/// the size.
class ReceivedBlock {
  public:
    /// Maps the file. Returns null unless it is a sealed shared-memory file of `smallest` to `largest` bytes,
    /// and also if memory runs out. The content is not copied.
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
