// The executable of a macOS bundle, loaded and linked in a process of this system.
#pragma once

#include <map>
#include <string>

#include "macho/format/MachOFile.h"
#include "macho/image/ImportSource.h"
#include "macho/image/MappedImage.h"

namespace dovrel::macho {

class LoadedBundle {
  public:
    /// Loads the slice of the executable for this process's processor and runs its initialisers. The image is
    /// never unloaded, as on macOS, where images with Objective-C classes stay loaded. Throws FormatError,
    /// whose text names all missing symbols.
    static LoadedBundle& load(const std::string& executable, const ImportSource& imports);

    LoadedBundle(const LoadedBundle&) = delete;
    LoadedBundle& operator=(const LoadedBundle&) = delete;

    /// Returns an exported function by its C name, or null if there is none.
    void* function(const std::string& name) const;
    /// The number of exported symbols.
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
