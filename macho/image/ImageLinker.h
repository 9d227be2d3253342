// Gives a mapped image the addresses that depend on this process.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "macho/format/BindOpcodes.h"
#include "macho/format/MachOFile.h"
#include "macho/image/ImportSource.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

class ImageLinker {
  public:
    /// All have to be there while the linker is used.
    ImageLinker(const MachOFile& file, MappedImage& image, const ImportSource& imports);

    /// Moves the image's own addresses to where it lies and sets those of others, also the ones that would be
    /// looked up at their first call. Throws FormatError with a line for each symbol that cannot be had.
    void link();

    /// Symbols by which others find functions of the image.
    const std::map<std::string, uint64_t>& exports() const { return exports_; }

  private:
    void bind(const Binding& binding);
    void bindWeakly(const Binding& binding);
    std::optional<void*> find(const Binding& binding) const;
    std::optional<void*> findOwn(const std::string& symbol) const;
    void set(const Binding& binding, void* address);
    std::string libraryOf(const Binding& binding) const;

    const MachOFile& file_;
    MappedImage& image_;
    const ImportSource& imports_;
    const std::map<std::string, uint64_t> exports_;
    std::set<std::string> missing_;
};

}  // namespace dovrel::macho
