// What the file system knows about a file, in the File Manager's form. Private to the layer.
#pragma once

#include <CoreServices/Files.h>

#include <string>

namespace portability {

/// Fills the fields of `info` that `whichInfo` chooses. Answers an errno value, 0 on success.
int readCatalogInfo(const std::string& path, FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info);

/// Sets what `whichInfo` chooses. Owner and group come first, because a change of them takes bits from the
/// mode. Answers an errno value, 0 on success.
int writeCatalogInfo(const std::string& path, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo& info);

}  // namespace portability
