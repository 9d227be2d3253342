// RequestKey: what a replay compares of a request.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "serialization/CPPByteArray.h"

namespace merrowd {

/// The session and the object are numbers of one run of a server, so a replay translates them before it
/// compares. The identity of the client's process (field 101) is left out. All other fields that the table
/// lists for the command are compared by their digest.
struct RequestKey {
    uint32_t command = 0;
    uint32_t session = 0;  ///< 0 if the command has no session
    std::string object;    ///< "" if the command has no object
    std::string digest;

    /// Returns the key of a request, or nothing if the bytes are not a request of a known command.
    static std::optional<RequestKey> fromRequest(const dovrel::CPPByteArray& request);
};

}  // namespace merrowd
