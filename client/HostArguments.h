// Turns the pointers that a host passes into the values that the library works with, and the values that the
// library returns into blocks of the host.
//
// A handle, `void**`, is the address of a pointer to bytes. If a required pointer is null, every function
// throws the null-pointer failure, a CPPException with the text of kDllNullPointerPassed. If memory runs out,
// it throws std::bad_alloc.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSOperations.h"
#include "dovrel/pos.h"
#include "serialization/ByteBlock.h"
#include "serialization/Identifiers.h"

namespace dovrel {

static_assert(POS_IDENTIFIER_SIZE == kPOSIdentifierSize,
              "identifiers have the same size at the hosts' interface and on the wire");

/// Throws the null-pointer failure if `pointer` is null.
void requireNonNull(const void* pointer);

/// Returns the bytes as a view. The pointer may be null only if `length` is 0.
ByteView viewBytes(const void* bytes, uint32_t length);

/// Returns a view of the `length` bytes of a handle. The handle must not be null. The pointer that it points
/// to may be null only if `length` is 0.
ByteView viewHandle(void* const* handle, uint32_t length);

/// Returns a copy of `length` bytes.
CPPByteArray copyBytes(const void* bytes, uint32_t length);

/// Returns a copy of the identifier to which a handle refers.
template <typename Identifier>
Identifier copyIdentifier(void* const* handle) {
    return Identifier(copyBytes(viewHandle(handle, POS_IDENTIFIER_SIZE).data, POS_IDENTIFIER_SIZE));
}

/// Returns copies of the `count` class identifiers in the list. The list may be null if `count` is 0.
std::vector<CPPClassID> copyClassList(void* const* classList, uint32_t count);

/// Returns the arguments of a method call, which refers to the host's name and parameters. The handle of the
/// executer names no executer if it is null or if the pointer that it points to is null. The name is required.
MethodCall makeMethodCall(void* const* executerId, void* const* objectId, const char* methodName,
                          const uint8_t* parameters, uint32_t parameterLength);

/// Returns the arguments of a command. The command refers to the host's bytes.
Command makeCommand(void* const* command, uint32_t commandLength, void* const* argument,
                    uint32_t argumentLength);

struct FreeBlock {
    void operator()(void* block) const;
};
/// A block from malloc for the identifier of an object.
using ObjectIdBlock = std::unique_ptr<void, FreeBlock>;

/// Returns a new block of POS_IDENTIFIER_SIZE bytes. Hosts free it with posFreeDllHeapData.
ObjectIdBlock allocateObjectId();

/// Stores the block and its length in the variables of the host, which then owns the block and frees it with
/// posDeleteDLLHeapData. The pointers to the variables must not be null.
void giveToHost(ByteBlock block, uint8_t** hostBlock, uint32_t* hostLength) noexcept;

/// Does the same for hosts that receive the length as a signed number. If the length does not fit, throws a
/// CPPException with the text of kDllInformationTooLong and leaves the variables unchanged.
void giveToHost(ByteBlock block, uint8_t** hostBlock, int32_t* hostLength);

}  // namespace dovrel
