// The values that the trader's operations take and return.
//
// The values that they take refer to bytes of the host. The host must keep these bytes until the operation
// returns. (Identifiers are copies.)
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "serialization/ByteBlock.h"
#include "serialization/Identifiers.h"

namespace dovrel {

/// A call of a method of an object.
struct MethodCall {
    CPPObjectID object;
    std::optional<ProtectedExecuterID> executer;  ///< nothing if no executer is named
    const char* name = "";                        ///< NUL-terminated, not null
    ByteView parameters;
};

/// A command for the server that belongs to no object.
struct Command {
    ByteView bytes;
    ByteView argument;
};

/// How the reply of the server ended an operation.
enum class POSOutcome {
    kDone,          ///< The reply is a normal one: the operation has its value.
    kUnlistedError  ///< The reply has an error code for which no exception is thrown.
};

/// What an operation returns.
template <class Value>
struct POSResult {
    POSOutcome outcome = POSOutcome::kUnlistedError;
    Value value{};  ///< empty unless the outcome is kDone
};

/// The message for the user that a reply may contain.
struct POSServerMessage {
    uint32_t flags = 0;  ///< non-zero if there is a message
    std::string text;    ///< in the system's encoding, may be empty

    bool isPresent() const { return flags != 0; }
};

/// The content of the reply to a registration.
struct POSRegistration {
    uint32_t applicationId = 0;  ///< identifies the application in every later request
    bool checksClasses = false;  ///< the client must check instantiations against the registered classes
};

/// The content of the reply to an instantiation.
struct POSInstance {
    CPPObjectID object;
    POSServerMessage message;
};

/// The content of the reply to a method call.
struct POSMethodReply {
    ByteBlock result;
    POSServerMessage message;
};

}  // namespace dovrel
