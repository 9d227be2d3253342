// A fresh folder for the files of one test, removed with everything in it at the end.
#pragma once

#include <string>

namespace dovrel::test {

class TemporaryFolder {
  public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// The path of the folder (canonical, without a slash at its end), or of something in it.
    const std::string& path() const { return path_; }
    std::string path(const std::string& name) const { return path_ + "/" + name; }

    /// Writes a file, and the folders on the way to it.
    void write(const std::string& name, const std::string& content) const;

    /// The whole content of a file; fails the test when it cannot be read.
    std::string read(const std::string& name) const;

  private:
    std::string path_;
};

}  // namespace dovrel::test
