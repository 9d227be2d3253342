#include "platform/files/OpenFile.h"

#include <sys/stat.h>

namespace dovrel {

OpenFile openForReading(const std::string& path) {
    OpenFile file(std::fopen(path.c_str(), "rb"));
    if (!file || isFolder(file.get())) throw newOpeningFailure(path);
    return file;
}

CPPException* newOpeningFailure(const std::string& path) {
    return new CPPException(("Could not open file for reading: " + path).c_str());
}

bool isFolder(std::FILE* file) {
    struct stat status;
    return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace dovrel
