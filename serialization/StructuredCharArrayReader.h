// StructuredCharArrayReader: reads a structured block from its own copy of a buffer.
#pragma once

#include <memory>

#include "serialization/StructuredByteArrayReader.h"

namespace dovrel {

class StructuredCharArrayReader : public StructuredByteArrayReader {
  public:
    StructuredCharArrayReader() = default;
    ~StructuredCharArrayReader() override;

    /// Copies the buffer and parses the copy. The buffer may be null if `length` is 0. Throws what initialize
    /// throws. If the copy cannot be allocated, throws std::bad_alloc and leaves the reader unchanged.
    void setBuffer(const void* buffer, uint32_t length);

  private:
    std::unique_ptr<CPPByteArray> ownCopy_;
};

}  // namespace dovrel
