// The commands that clients can run in the server without an object, and the information that they can ask
// for.
//
//   command    argument   answers
//   ping       any bytes  the same bytes
//   version    none       "Merrowd " and the version of the server
//   classes    none       the names of the classes, a line feed after each
//   objects    none       the objects of the calling application: identifier in hexadecimal digits, blank,
//   class, line feed
//
// An information request is a 16-bit number, the least significant byte first:
//
//   1     what the command "version" answers
//   2     what the command "classes" answers
//   3     how many applications are registered, 4 bytes, least significant first
//   4     how many objects there are, likewise
//   352   the interface version, likewise
#pragma once

#include <string>

#include "server/ServerState.h"

namespace merrowd {

/// Runs a command for an application. Refuses (command not executed) what is no command; (parameter format)
/// an argument where the command takes none; (application not registered) an application that is none.
CPPByteArray runCommand(ServerState& state, uint32_t applicationId, const std::string& command,
                        CPPByteArray argument);

/// Refuses (parameter format) what is no request for information.
CPPByteArray informationFor(const ServerState& state, const CPPByteArray& request);

}  // namespace merrowd
