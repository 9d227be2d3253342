// StructuredCharArrayReader: reads a structured block from a buffer that need not outlive the call.
#pragma once

#include <memory>

#include "serialization/StructuredByteArrayReader.h"

namespace dovrel {

class StructuredCharArrayReader : public StructuredByteArrayReader {
  public:
    StructuredCharArrayReader() = default;
    ~StructuredCharArrayReader() override;

    /// Copies the buffer and parses the copy; fails as initialize does. The buffer may be null when length is
    /// 0. std::bad_alloc, and the reader as it was, where there is no memory for the copy.
    void setBuffer(const void* buffer, uint32_t length);

  private:
    std::unique_ptr<CPPByteArray> ownCopy_;
};

}  // namespace dovrel
