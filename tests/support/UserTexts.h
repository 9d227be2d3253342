// The fixed texts of the transport, copied character by character.
#pragma once

#include <string>

namespace dovrel::test {

constexpr char kCommunicationError[] =
    "An unknown interapplication communication error occured. In case the problem persists, please close all "
    "applications and restart your computer.";

/// The console output if the server is not installed.
constexpr char kNotFoundBlock[] =
    " \n"
    "============================================= \n"
    " Tessilor Runtime Error! \n"
    " Could not find Merrowd server application! \n"
    " Please download and install \n"
    " the latest version of \n"
    " the Tessilor Runtime software\n"
    " from http://www.tessilor.example/download \n"
    "============================================= \n"
    " \n";

/// Returns the console output if the server could not be launched or woken.
inline std::string launchFailureBlock(const std::string& error) {
    return " \n"
           "=============================================== \n"
           "  -- Tessilor Runtime Error -- \n"
           " Could not launch Merrowd server application! \n"
           "\n"
           "error: " +
           error +
           "\n"
           "\n"
           " In case this problem persists, you might want \n"
           " to try one of the following before contacting \n"
           " your software vendor's support department: \n"
           "\n"
           " - Manually quit the \"Merrowd\" process \n"
           " - Restart your computer \n"
           " - Download and install the latest version of \n"
           "   the Tessilor Runtime software\n"
           "   from http://www.tessilor.example/download \n"
           "=============================================== \n"
           " \n";
}

}  // namespace dovrel::test
