// Prints messages to standard output for the user of a console program if the server cannot be started.
#pragma once

#include <cstdint>

namespace dovrel {

/// The web page from which the server can be downloaded.
inline constexpr char kDownloadAddress[] = "http://www.tessilor.example/download";

/// Says that the server application is not installed.
void printServerNotFound();

/// Says that the installed server application could not be launched or never answered. `error` is the error
/// code of the last failure.
void printLaunchFailure(int16_t error);

}  // namespace dovrel
