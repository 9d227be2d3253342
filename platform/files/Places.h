// The fixed places of the product on a machine, each named once.
//
// They are paths of the platform. Calls of the platform take them as they are; for the file calls of the
// language they go through fileSystemPath first.
#pragma once

#include <string>

namespace dovrel::places {

/// Where the product is installed.
constexpr char kInstallFolder[] = "/Library/Application Support/Tessilor/pos/";

/// The install folder, relative to the local domain's application support folder.
constexpr char kInstallFolderInApplicationSupport[] = "Tessilor/pos/";

// What lies in the install folder: the server application, this library's own bundle, its sibling.
constexpr char kServerBundleName[] = "Merrowd.app";
constexpr char kLibraryBundleName[] = "Dovrel.bundle";
constexpr char kSiblingBundleName[] = "Brasket.bundle";

// Components that are installed elsewhere.
constexpr char kCompatibilityBundle[] = "/Library/Quernvale/Fenwild.bundle";
constexpr char kManagementApplication[] = "/Applications/Halden Console.app";

/// The property list that names the operating system and its version.
constexpr char kSystemVersionFile[] = "/System/Library/CoreServices/SystemVersion.plist";

/// A bundle's property list, inside the bundle.
constexpr char kInfoPropertyList[] = "/Contents/Info.plist";

constexpr char kLogFolder[] = "/Library/Logs/Tessilor/";

/// The library's error log, inside the log folder.
constexpr char kErrorLogName[] = "POSDLLErrorLog.txt";

}  // namespace dovrel::places

namespace dovrel {

/// `platformPath` (absolute, UTF-8) as the language's file calls take it. The platform itself is asked,
/// because only it knows where its fixed places lie; on a Mac nothing changes. A slash at the end stays. A
/// text of which no URL can be made comes back as it is.
std::string fileSystemPath(const std::string& platformPath);

}  // namespace dovrel
