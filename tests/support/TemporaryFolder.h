// A new folder for the files of one test. The destructor removes it with its contents.
#pragma once

#include <string>

namespace dovrel::test {

class TemporaryFolder {
  public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// Both return a path: that of the folder (canonical, without a slash at its end), or that of an
    /// item in it.
    const std::string& path() const { return path_; }
    std::string path(const std::string& name) const { return path_ + "/" + name; }

    /// Writes a file and creates the folders that lead to it.
    void write(const std::string& name, const std::string& content) const;

    /// Returns the whole content of a file; fails the test if the file cannot be read.
    std::string read(const std::string& name) const;

  private:
    std::string path_;
};

}  // namespace dovrel::test
