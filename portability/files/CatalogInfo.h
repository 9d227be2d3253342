// Reads and writes file attributes in the File Manager's format. Private to the layer.
#pragma once

#include <CoreServices/Files.h>

#include <string>

namespace portability {

/// Fills the fields of `info` that `whichInfo` selects. Returns 0 or an errno value.
int readCatalogInfo(const std::string& path, FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info);

/// Sets the attributes that `whichInfo` selects. Owner and group are set first, because changing them clears
/// bits of the mode. Returns 0 or an errno value.
int writeCatalogInfo(const std::string& path, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo& info);

}  // namespace portability
