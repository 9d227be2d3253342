// Memory of a file that two processes share, as its sender sees it.
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "portability/posix/FileDescriptor.h"

/// A writable mapping of a whole file.
class SharedPages {
  public:
    SharedPages(const portability::FileDescriptor& file, size_t size)
        : size_(size),
          bytes_(
              static_cast<uint8_t*>(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0))) {
        if (bytes_ == MAP_FAILED) throw std::runtime_error("the file cannot be mapped");
    }
    SharedPages(const SharedPages&) = delete;
    SharedPages& operator=(const SharedPages&) = delete;
    ~SharedPages() { munmap(bytes_, size_); }

    /// Writes a number in one access, as another process could at any time.
    void write(size_t offset, uint32_t number) {
        __atomic_store_n(reinterpret_cast<uint32_t*>(bytes_ + offset), number, __ATOMIC_SEQ_CST);
    }
    void write(size_t offset, const void* bytes, size_t size) { std::memcpy(bytes_ + offset, bytes, size); }

  private:
    size_t size_;
    uint8_t* bytes_;
};
