// The fixed paths of the product on a machine. Each path is defined here and nowhere else.
//
// They are paths of the platform. Functions of the platform take them unchanged. For `fopen` and other C
// library functions, convert them with fileSystemPath first.
#pragma once

#include <string>

namespace dovrel::places {

/// The folder in which the product is installed.
constexpr char kInstallFolder[] = "/Library/Application Support/Tessilor/pos/";

/// The install folder, relative to the local domain's application support folder.
constexpr char kInstallFolderInApplicationSupport[] = "Tessilor/pos/";

// The bundles in the install folder: the server application, this library's own bundle, and its sibling.
constexpr char kServerBundleName[] = "Merrowd.app";
constexpr char kLibraryBundleName[] = "Dovrel.bundle";
constexpr char kSiblingBundleName[] = "Brasket.bundle";

// Components that are installed in other folders.
constexpr char kCompatibilityBundle[] = "/Library/Quernvale/Fenwild.bundle";
constexpr char kManagementApplication[] = "/Applications/Halden Console.app";

/// The property list with the operating system's name and version.
constexpr char kSystemVersionFile[] = "/System/Library/CoreServices/SystemVersion.plist";

/// The path of a bundle's property list, relative to the bundle.
constexpr char kInfoPropertyList[] = "/Contents/Info.plist";

constexpr char kLogFolder[] = "/Library/Logs/Tessilor/";

/// The file name of the library's error log in the log folder.
constexpr char kErrorLogName[] = "POSDLLErrorLog.txt";

}  // namespace dovrel::places

namespace dovrel {

/// Converts `platformPath` (absolute, UTF-8) into a path for `fopen` and other C library functions.
/// The conversion uses the platform's own function, because only the platform knows where its fixed
/// folders are; on a Mac the path does not change. A slash at the end is kept. Returns the text
/// unchanged if no URL can be made from it.
std::string fileSystemPath(const std::string& platformPath);

/// Returns the path of the log folder for `fopen` and other C library functions, with a slash at its end.
/// With `create`, a missing folder is created with all permissions for all users. The path is returned even
/// if the folder cannot be created.
std::string logFolderPath(bool create);

/// Returns the path of the library's error log. Creates the log folder as logFolderPath(true) does, but not
/// the file.
std::string errorLogPath();

}  // namespace dovrel
