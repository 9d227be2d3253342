// Converts file names from and to UTF-16, which the File Manager uses. Private to the layer.
#pragma once

#include <CoreServices/Files.h>

#include <string>

namespace portability {

/// Converts a name to the form in which the file system stores it. A slash in the name becomes a colon, so no
/// name can refer to another folder. Returns noErr or one of these errors:
/// - paramErr: `name` is null.
/// - errFSMissingName: the name is empty.
/// - errFSNameTooLong: the name has more than 255 units.
/// - bdNamErr: the name is not allowed for a file.
OSErr fileName(UniCharCount length, const UniChar* name, std::string& result);

/// The reverse conversion. A name that is not valid UTF-8 is read as ISO Latin 1.
void unicodeName(const std::string& name, HFSUniStr255& result);

}  // namespace portability
