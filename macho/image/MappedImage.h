// The memory of a loaded image.
#pragma once

#include <cstdint>
#include <string>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

class MappedImage {
  public:
    /// Copies the file's segments into memory of the process; all of it can be written until protect().
    /// Throws FormatError where there is no memory.
    explicit MappedImage(const MachOFile& file);
    MappedImage(const MappedImage&) = delete;
    MappedImage& operator=(const MappedImage&) = delete;
    /// The memory is given back unless it was kept.
    ~MappedImage();

    /// From now on code and data of the image may be known to others: it stays until the process ends.
    void keep() { isKept_ = true; }

    /// Gives each segment the access that the file wants for it.
    void protect(const MachOFile& file);

    uint8_t* base() const { return base_; }
    size_t size() const { return size_; }
    bool contains(const void* address) const;

    /// The memory of so many bytes at an address of the file. Throws FormatError where they are not the
    /// image's.
    uint8_t* at(uint64_t address, size_t size = 1) const;
    /// A word of the image, read as an address of this process.
    uintptr_t word(uint64_t address) const;
    void setWord(uint64_t address, uintptr_t word);

  private:
    uint8_t* base_;
    size_t size_;
    bool isKept_ = false;
};

}  // namespace dovrel::macho
