#include "bundle/LibraryFile.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

#include "portability/posix/FileDescriptor.h"

namespace portability {

namespace {

constexpr unsigned char kOwnClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

template <typename Structure>
bool readAt(int file, uint64_t offset, Structure& structure) {
    return pread(file, &structure, sizeof structure, static_cast<off_t>(offset)) == ssize_t{sizeof structure};
}

bool isLibraryHeader(const ElfW(Ehdr) & header) {
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_ident[EI_CLASS] == kOwnClass &&
           header.e_type == ET_DYN && header.e_phentsize == sizeof(ElfW(Phdr)) && header.e_phnum > 0;
}

bool contains(const struct stat& file, const ElfW(Phdr) & segment) {
    const auto size = static_cast<uint64_t>(file.st_size);
    return segment.p_offset <= size && segment.p_filesz <= size - segment.p_offset;
}

}  // namespace

bool isCompleteLibrary(const std::string& path) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status;
    ElfW(Ehdr) header;
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    if (!readAt(file.get(), 0, header) || !isLibraryHeader(header)) return false;
    for (uint64_t index = 0; index < header.e_phnum; ++index) {
        ElfW(Phdr) segment;
        if (!readAt(file.get(), header.e_phoff + index * sizeof segment, segment)) return false;
        if (segment.p_type == PT_LOAD && !contains(status, segment)) return false;
    }
    return true;
}

}  // namespace portability
