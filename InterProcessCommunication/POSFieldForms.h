// The forms of fields that are more than a number or a block of bytes, on top of what a transfer object reads
// and writes.
#pragma once

#include <cstdint>
#include <string>

#include "InterProcessCommunication/POSTransferObj.h"

namespace dovrel {

/// The message for the user that some answers carry.
struct POSServerMessage {
    uint32_t flags = 0;  ///< non-zero when a message is present
    std::string text;    ///< in the system's encoding, may be empty

    bool isPresent() const { return flags != 0; }
};

// Fields to be written. They refer to the bytes of the name or identifier, which must outlive them.

/// The zero-terminated text with its terminating zero.
StructuredPart nameField(uint32_t id, const char* name);

/// Throws a CPPException for an identifier that is not of kPOSIdentifierSize bytes: on the wire and at the
/// hosts' interface an identifier is never shorter or longer.
StructuredPart identifierField(uint32_t id, const CPPByteArray& identifier);
void requireIdentifierSize(const CPPByteArray& identifier);

/// Replaces `identifier` by the field. Throws, and leaves it alone, for a field that is not of
/// kPOSIdentifierSize bytes.
void readIdentifier(POSTransferObj& object, uint32_t id, CPPByteArray& identifier);

/// A field shorter than its word of flags is no message.
POSServerMessage readServerMessage(POSTransferObj& object, uint32_t id);

}  // namespace dovrel
