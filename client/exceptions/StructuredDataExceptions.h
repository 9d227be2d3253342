// The failures of the structured data writer and readers.
//
// The detail text of each exception names the place of the throw: 12 hexadecimal digits, a colon and a space.
#pragma once

#include "client/exceptions/CPPException.h"

namespace dovrel {

/// The structured block has no part with the requested tag.
class PartNotFoundException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

/// A reader was used before it had a block, or its bytes are not a structured block.
class StructuredReaderNotInitializedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

/// The written bytes did not fit into the writer's target.
class StructuredWriteFailedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

/// A writer was used before it had a target.
class StructuredWriterNotInitializedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override;
};

}  // namespace dovrel
