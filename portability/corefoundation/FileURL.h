// Converts between file paths and URLs. Private to the layer.
#pragma once

#include <CoreFoundation/CFURL.h>

#include <string>

namespace portability {

/// Returns the bytes of a path as text for a URL. Characters that are not allowed in a URL's path
/// are escaped.
std::string escapedPath(const std::string& path);

/// Converts escaped text back to bytes. Returns false if an escape is damaged or represents a zero byte.
bool unescapePath(const std::string& text, std::string& path);

/// Returns a URL for a file path on this system. The caller releases it. Returns null for an empty path.
CFURLRef createFileURL(const std::string& path, bool isDirectory);

/// Returns the path on this system for a URL, without a trailing slash. Returns the empty string if the URL
/// has no path.
std::string toPath(CFURLRef url);

/// Returns whether the URL is a file URL.
bool isFileURL(CFURLRef url);

/// Returns the text of the whole URL.
std::string toText(CFURLRef url);

}  // namespace portability
