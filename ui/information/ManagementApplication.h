// The maker's management application, in which alerts have a Help button.
#pragma once

namespace dovrel {

inline constexpr const char* kManagementApplicationIdentifier = "com.Quernvale.Halcon";

/// Whether the process is the management application: its main bundle's identifier, without regard to case.
bool isManagementApplication();

}  // namespace dovrel
