// The failures of the structured data writer and readers.
//
// The detail text of each is an error-site code: 12 hexadecimal digits that name the place of the throw, a
// colon and a blank.
#pragma once

#include "client/exceptions/CPPException.h"

namespace dovrel {

/// A structured block has no part with the requested tag.
class PartNotFoundException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

/// A reader was used before a block was given to it, or the block is not a structured block.
class StructuredReaderNotInitializedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

/// The bytes written did not fit into the writer's target.
class StructuredWriteFailedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

/// A writer was used before a target was given to it.
class StructuredWriterNotInitializedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

}  // namespace dovrel
