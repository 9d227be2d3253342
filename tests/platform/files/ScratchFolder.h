// A temporary folder in which tests create files and check their permissions.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class ScratchFolder : public TemporaryFolder {
  public:
    /// Creates a file and returns its path.
    std::string write(const std::string& name, const std::string& content) const {
        TemporaryFolder::write(name, content);
        return path(name);
    }

    /// Returns the content of a file; empty also if there is no such file.
    static std::string readFile(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static unsigned readPermissions(const std::string& file) {
        return static_cast<unsigned>(std::filesystem::status(file).permissions()) & 07777u;
    }

    static void setPermissions(const std::string& file, unsigned mode) {
        std::filesystem::permissions(file, static_cast<std::filesystem::perms>(mode));
    }
};

}  // namespace dovrel::test
