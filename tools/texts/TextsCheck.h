// Checks a texts file.
#pragma once

#include <vector>

#include "tools/properties/EntryList.h"
#include "tools/texts/TextsFile.h"

namespace dovrel::tools {

/// Returns the problems of the file in the order of its lines, those without a line first:
///
/// - languages that have no texts, that occur twice, that the library does not know or whose texts it never uses,
/// - keys that are missing in a language, keys that no code asks for, and empty texts,
/// - values that are not strings, control characters, and characters in UTF-8 (the file is in Mac Roman),
/// - the problems of the entries, as listEntries finds them. Other lines are comments.
std::vector<LineProblem> checkTexts(const TextsFile& file);

}  // namespace dovrel::tools
