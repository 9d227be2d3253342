// The commands that clients can run in the server without an object, and the information that they can request.
//
//   command    argument   result
//   ping       any bytes  the same bytes
//   version    none       "Merrowd " and the version of the server
//   classes    none       the names of the classes, a line feed after each
//   objects    none       one line for each object of the calling application:
//                         identifier in hexadecimal digits, blank, class, line feed
//
// An information request is a 16-bit number, least significant byte first. Numbers in results are 4 bytes,
// least significant byte first.
//
//   request    result
//   1          as for the command "version"
//   2          as for the command "classes"
//   3          the number of registered applications
//   4          the number of objects
//   352        the interface version
#pragma once

#include <string>

#include "server/ServerState.h"

namespace merrowd {

/// Runs a command for an application and returns its result. Throws Refusal:
///
/// - command not executed, if there is no such command;
/// - parameter format, if the command takes no argument but one is given;
/// - application not registered, if the application's identifier is unknown.
CPPByteArray runCommand(ServerState& state, uint32_t applicationId, const std::string& command,
                        CPPByteArray argument);

/// Returns the requested information. Throws Refusal (parameter format) if there is no such information.
CPPByteArray readInformation(const ServerState& state, const CPPByteArray& request);

}  // namespace merrowd
