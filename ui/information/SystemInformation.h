// Reads the operating system's name and version for the system report.
//
// All texts are in UTF-8. All temporary objects of Foundation are released before a
// function returns. Any thread.
#pragma once

#include <optional>
#include <string>

namespace dovrel {

/// Returns the value of `key` in the system's version property list, formatted as Foundation's "%@" does.
/// Returns nothing if the list is missing or does not contain the key.
std::optional<std::string> systemVersionValue(const std::string& key);

/// Returns the system's name and architecture, for example "Mac OS X (x86)". If the name is missing, "(null)"
/// takes its place, because "%@" formats nil so.
std::string osNameText();

/// Returns the system's version and build, for example "10.6.8 (10K549)". Missing values are
/// formatted as in osNameText.
std::string osVersionText();

}  // namespace dovrel
