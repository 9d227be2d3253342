// Sets the addresses in a mapped image that depend on this process.
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
    /// All arguments must outlive the linker.
    ImageLinker(const MachOFile& file, MappedImage& image, const ImportSource& imports);

    /// Adjusts the image's own addresses to its place in memory, and sets the addresses of imports. This
    /// includes those that macOS would look up at their first call. Throws FormatError, whose text has one
    /// line for each symbol that is not available.
    void link();

    /// The symbols by which other code finds functions of the image.
    const std::map<std::string, uint64_t>& exports() const { return exports_; }

  private:
    void bind(const Binding& binding);
    void bindWeakly(const Binding& binding);
    std::optional<void*> find(const Binding& binding) const;
    std::optional<void*> findOwn(const std::string& symbol) const;
    void set(const Binding& binding, void* address);
    std::string findLibrary(const Binding& binding) const;

    const MachOFile& file_;
    MappedImage& image_;
    const ImportSource& imports_;
    const std::map<std::string, uint64_t> exports_;
    std::set<std::string> missing_;
};

}  // namespace dovrel::macho
