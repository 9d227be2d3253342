// The names of the files that the server uses besides its own program.
#pragma once

namespace merrowd {

/// The log, in the log folder (platform/files/Places.h).
inline constexpr char kLogName[] = "Merrowd.log";

/// The settings that the server reads when it starts, in the install folder.
inline constexpr char kSettingsName[] = "Merrowd.conf";

}  // namespace merrowd
