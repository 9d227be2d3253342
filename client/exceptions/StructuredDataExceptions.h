// The failures of the structured data writer and readers.
//
// The detail text of each exception names the place of the throw: 12 hexadecimal digits, a colon and a space.
#pragma once

#include <memory>

#include "client/exceptions/CPPException.h"

namespace dovrel {

/// The structured block has no part with the requested tag.
class PartNotFoundException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPartNotFound; }
};

/// A reader was used before it had a block, or its bytes are not a structured block.
class StructuredReaderNotInitializedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kStructuredReaderNotInitialized; }
};

/// The written bytes did not fit into the writer's target.
class StructuredWriteFailedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kStructuredWriteFailed; }
};

/// A writer was used before it had a target.
class StructuredWriterNotInitializedException : public CPPException {
  public:
    using CPPException::CPPException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kStructuredWriterNotInitialized; }
};

/// Throws a new Exception with the message, the detail and the code 0. The catching code owns it. The
/// function is not inlined, so that the rare failure does not slow down the normal path of the operations.
template <class Exception>
[[noreturn, gnu::cold, gnu::noinline]] void throwSerializationFailure(const char* detail,
                                                                      const char* message) {
    auto failure = std::make_unique<Exception>(message);
    failure->setDetail(detail);
    throw failure.release();
}

}  // namespace dovrel
