// A macOS bundle's executable in a process of this system: loaded, linked and ready to be called.
#pragma once

#include <map>
#include <string>

#include "macho/format/MachOFile.h"
#include "macho/image/ImportSource.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

class LoadedBundle {
  public:
    /// Loads the slice of the executable for this process's processor and runs its initialisers. As on its
    /// own system an image with Objective-C classes is never unloaded; here none is. Throws FormatError, with
    /// all the symbols that are missing.
    static LoadedBundle& load(const std::string& executable, const ImportSource& imports);

    LoadedBundle(const LoadedBundle&) = delete;
    LoadedBundle& operator=(const LoadedBundle&) = delete;

    /// An exported function by its name in C; null where there is none.
    void* function(const std::string& name) const;
    /// How many symbols are exported.
    size_t exportCount() const { return exports_.size(); }

    const MachOFile& file() const { return file_; }
    const MappedImage& image() const { return image_; }

  private:
    LoadedBundle(const std::string& executable, const ImportSource& imports);
    void runInitialisers() const;

    const MachOFile file_;
    MappedImage image_;
    std::map<std::string, uint64_t> exports_;
};

}  // namespace dovrel::macho
