// Names of files in UTF-16, as the File Manager gives and takes them. Private to the layer.
#pragma once

#include <CoreServices/Files.h>

#include <string>

namespace portability {

/// The name as the file system keeps it. A slash in it is a colon there, so no name can leave its folder. The
/// result is errFSMissingName for an empty name, errFSNameTooLong for more than 255 units, bdNamErr for one
/// that cannot be a file's, paramErr for a null pointer.
OSErr fileName(UniCharCount length, const UniChar* name, std::string& result);

/// The opposite. A name that is not valid in UTF-8 is given in ISO Latin 1.
void unicodeName(const std::string& name, HFSUniStr255& result);

}  // namespace portability
