// An open file of the language's file calls, closed at the end of the scope.
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

/// The file opened with mode "rb"; never null. Throws a new CPPException with the message "Could not open
/// file for reading: " and the path when there is no such file, it may not be read, or it is a folder.
OpenFile openForReading(const std::string& path);

/// The failure that openForReading throws, for those who find later that a file cannot be read. The caller
/// owns it.
CPPException* newOpeningFailure(const std::string& path);

/// Whether what was opened is a folder, which the language's calls open and cannot read.
bool isFolder(std::FILE* file);

}  // namespace dovrel
