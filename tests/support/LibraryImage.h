// The executable of a bundle in this process. What that takes depends on the kind of executable: there is a
// source for this system's (LibraryImage.cpp) and one for that of macOS (tests/macho/MachOLibraryImage.cpp).
#pragma once

#include <string>

namespace dovrel::test {

class LibraryImage {
  public:
    /// Loads the executable. Throws std::runtime_error, which says why, where that is not possible.
    explicit LibraryImage(const std::string& executable);
    LibraryImage(const LibraryImage&) = delete;
    LibraryImage& operator=(const LibraryImage&) = delete;
    ~LibraryImage();

    /// An exported function; null where there is none.
    void* function(const char* name) const;

  private:
    void* handle_;
};

}  // namespace dovrel::test
