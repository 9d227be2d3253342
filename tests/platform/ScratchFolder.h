// A fresh folder for the files of one test, removed with everything in it at the end.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace dovrel::test {

class ScratchFolder {
  public:
    ScratchFolder() : path_((std::filesystem::temp_directory_path() / "dovrel-platform-XXXXXX").string()) {
        if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder: " + path_);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }
    std::string path(const std::string& name) const { return path_ + "/" + name; }

    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

    static std::string contentOf(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        EXPECT_TRUE(stream.is_open()) << file;
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    static unsigned permissionsOf(const std::string& file) {
        return static_cast<unsigned>(std::filesystem::status(file).permissions()) & 07777u;
    }

    static void setPermissions(const std::string& file, unsigned mode) {
        std::filesystem::permissions(file, static_cast<std::filesystem::perms>(mode));
    }

  private:
    std::string path_;
};

}  // namespace dovrel::test
