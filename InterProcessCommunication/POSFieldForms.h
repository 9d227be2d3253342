// Reads and writes the fields that are neither plain numbers nor plain blocks of bytes: names, identifiers
// and server messages.
#pragma once

#include <cstdint>

#include "InterProcessCommunication/POSOperations.h"
#include "InterProcessCommunication/POSTransferObj.h"

namespace dovrel {

// The two functions below return fields to be written. A field refers to the bytes of the name or identifier,
// which must outlive it.

/// Returns a field with the NUL-terminated text, including its NUL. A request with a text of 4 GiB or more
/// cannot be made: that throws a StructuredWriteFailedException.
StructuredPart makeNameField(uint32_t id, const char* name);

/// Returns a field with the identifier. Throws a CPPException if the identifier does not have
/// kPOSIdentifierSize bytes. Identifiers have that size on the wire and at the hosts' interface.
StructuredPart makeIdentifierField(uint32_t id, const CPPByteArray& identifier);

/// Throws a CPPException if the identifier does not have kPOSIdentifierSize bytes.
void requireIdentifierSize(const CPPByteArray& identifier);

/// Reads the field into `identifier`. If the field does not have kPOSIdentifierSize bytes, throws a
/// CPPException and leaves `identifier` unchanged.
void readIdentifier(POSTransferObj& object, uint32_t id, CPPByteArray& identifier);

/// Reads a server message. If the field is too short for the word of flags, returns no message.
POSServerMessage readServerMessage(POSTransferObj& object, uint32_t id);

}  // namespace dovrel
