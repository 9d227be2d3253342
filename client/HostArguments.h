// Turns the pointers that a host passes into the values that the library works with.
//
// A handle, `void**`, is the address of a pointer to bytes. If a required pointer is null, every function
// throws the null-pointer failure, a CPPException with the text of kDllNullPointerPassed. If a copy cannot be
// allocated, it throws std::bad_alloc.
#pragma once

#include <cstdint>
#include <vector>

#include "InterProcessCommunication/POSCommands.h"
#include "dovrel/pos.h"
#include "serialization/Identifiers.h"

namespace dovrel {

static_assert(POS_IDENTIFIER_SIZE == kPOSIdentifierSize,
              "hosts and the server speak of the same identifiers");

/// Throws the null-pointer failure if `pointer` is null.
void requireNonNull(const void* pointer);

/// Throws the null-pointer failure if `bytes` is null, unless `length` is 0.
void requireBytes(const void* bytes, uint32_t length);

/// Returns the pointer to the `length` bytes of a handle. The handle must not be null. The pointer that it
/// points to may be null only if `length` is 0.
const uint8_t* bytesOfHandle(void* const* handle, uint32_t length);

/// Returns a copy of `length` bytes.
CPPByteArray copyOfBytes(const void* bytes, uint32_t length);

/// Returns a copy of the identifier to which a handle refers.
template <typename Identifier>
Identifier identifierOfHandle(void* const* handle) {
    return Identifier(copyOfBytes(bytesOfHandle(handle, POS_IDENTIFIER_SIZE), POS_IDENTIFIER_SIZE));
}

/// Returns whether the handle names an executer: neither the handle nor the pointer that it
/// points to is null.
bool namesExecuter(void* const* executerId);

/// Returns copies of the `count` class identifiers in the list. The list may be null if `count` is 0.
std::vector<CPPClassID> classesOfList(void* const* classList, uint32_t count);

/// Returns the length of an information block as the signed number that hosts receive. Throws a CPPException
/// with the text of kDllInformationTooLong if the length does not fit.
int32_t signedLength(uint32_t length);

}  // namespace dovrel
