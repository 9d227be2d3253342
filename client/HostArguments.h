// Turns the pointers that a host passes into the values that the library works with.
//
// A handle, `void**`, is the address of a pointer to the bytes that it stands for. All functions throw the
// null-pointer failure, a CPPException with the text of kDllNullPointerPassed, where a pointer is missing
// that must be there, and std::bad_alloc when a copy finds no room.
#pragma once

#include <cstdint>
#include <vector>

#include "InterProcessCommunication/POSCommands.h"
#include "dovrel/pos.h"
#include "serialization/Identifiers.h"

namespace dovrel {

static_assert(POS_IDENTIFIER_SIZE == kPOSIdentifierSize,
              "hosts and the server speak of the same identifiers");

/// Throws the null-pointer failure.
void requireNonNull(const void* pointer);

/// The pointer may be null only when there are no bytes behind it.
void requireBytes(const void* bytes, uint32_t length);

/// The `length` bytes behind a handle; the handle must not be null, the pointer behind it only when there are
/// no bytes.
const uint8_t* bytesOfHandle(void* const* handle, uint32_t length);

/// A copy of `length` bytes.
CPPByteArray copyOfBytes(const void* bytes, uint32_t length);

/// A copy of the identifier behind a handle.
template <typename Identifier>
Identifier identifierOfHandle(void* const* handle) {
    return Identifier(copyOfBytes(bytesOfHandle(handle, POS_IDENTIFIER_SIZE), POS_IDENTIFIER_SIZE));
}

/// Whether an executer is named: neither the handle nor the pointer behind it is null.
bool namesExecuter(void* const* executerId);

/// Copies of the `count` class identifiers that the list points to; it may be null when there are none.
std::vector<CPPClassID> classesOfList(void* const* classList, uint32_t count);

/// The length of a block of information as hosts take it. A length that has no place there is a failure, a
/// CPPException with the text of kDllInformationTooLong.
int32_t signedLength(uint32_t length);

}  // namespace dovrel
