// The memory of a loaded image.
#pragma once

#include <cstdint>
#include <string>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

class MappedImage {
  public:
    /// Copies the file's segments into new memory of the process. The memory is writable until protect().
    /// Throws FormatError if memory runs out.
    explicit MappedImage(const MachOFile& file);
    MappedImage(const MappedImage&) = delete;
    MappedImage& operator=(const MappedImage&) = delete;
    /// Frees the memory unless keep() was called.
    ~MappedImage();

    /// Keeps the memory until the process exits, because other code may now have addresses in the image.
    void keep() { isKept_ = true; }

    /// Sets the access rights of each segment as the file specifies.
    void protect(const MachOFile& file);

    uint8_t* base() const { return base_; }
    size_t size() const { return size_; }
    bool contains(const void* address) const;

    /// Returns the memory of `size` bytes at an address of the file. Throws FormatError if they are not
    /// inside the image.
    uint8_t* at(uint64_t address, size_t size = 1) const;
    /// Returns a word of the image as an address of this process.
    uintptr_t word(uint64_t address) const;
    void setWord(uint64_t address, uintptr_t word);

  private:
    uint8_t* base_;
    size_t size_;
    bool isKept_ = false;
};

}  // namespace dovrel::macho
