// OpenFile: an open `FILE*` that is closed at the end of the scope.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"

namespace dovrel {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

/// Opens the file with mode "rb". Never returns null. Throws a new CPPException if the file does not exist,
/// may not be read, or is a folder. Its message is "Could not open file for reading: " and the path.
OpenFile openForReading(const std::string& path);

/// Returns the exception that openForReading throws, for callers that find out later that a file cannot be
/// read. The caller owns it.
CPPException* newOpeningFailure(const std::string& path);

/// Returns whether the open file is a folder. `fopen` opens folders for reading, but reading them fails.
bool isFolder(std::FILE* file);

}  // namespace dovrel
