// The manufacturer's management application. Only in this application alerts have a Help button.
#pragma once

namespace dovrel {

inline constexpr const char* kManagementApplicationIdentifier = "com.Quernvale.Halcon";

/// Returns whether this process is the management application. Compares the identifier of the
/// main bundle, ignoring case.
bool isManagementApplication();

}  // namespace dovrel
