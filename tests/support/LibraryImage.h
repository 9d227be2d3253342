// Loads the executable of a bundle into this process. The kind of executable decides how: LibraryImage.cpp is
// the source for this system's, tests/macho/MachOLibraryImage.cpp is the one for macOS.
#pragma once

#include <string>

namespace dovrel::test {

class LibraryImage {
  public:
    /// Loads the executable. Throws std::runtime_error with the reason if that fails.
    explicit LibraryImage(const std::string& executable);
    LibraryImage(const LibraryImage&) = delete;
    LibraryImage& operator=(const LibraryImage&) = delete;
    ~LibraryImage();

    /// Returns the address of an exported function, or null if there is no such function.
    void* function(const char* name) const;

  private:
    void* handle_;
};

}  // namespace dovrel::test
