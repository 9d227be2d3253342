// What the user of a program with a console gets to read when the server cannot be brought up. Standard
// output.
#pragma once

#include <cstdint>

namespace dovrel {

/// Where the maker offers the server for download.
inline constexpr char kDownloadAddress[] = "http://www.tessilor.example/download";

/// The server application is not installed.
void printServerNotFound();

/// The server application is there, but it could not be launched or never answered; `error` is the last
/// failure.
void printLaunchFailure(int16_t error);

}  // namespace dovrel
