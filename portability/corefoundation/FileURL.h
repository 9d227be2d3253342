// Paths of files in URLs. Private to the layer.
#pragma once

#include <CoreFoundation/CFURL.h>

#include <string>

namespace portability {

/// A URL's text for the bytes of a path: what may not stand in a URL's path is escaped.
std::string escapedPath(const std::string& path);

/// The bytes that an escaped text stands for. False when an escape is damaged or stands for a zero byte.
bool unescapePath(const std::string& text, std::string& path);

/// The URL of a file by its path on this system; the caller releases it. Null for an empty path.
CFURLRef createFileURL(const std::string& path, bool isDirectory);

/// The path on this system that a URL stands for, without a slash at its end; empty when it has none.
std::string pathOf(CFURLRef url);

/// Whether the URL names a file.
bool isFileURL(CFURLRef url);

/// The whole URL as text.
std::string textOf(CFURLRef url);

}  // namespace portability
