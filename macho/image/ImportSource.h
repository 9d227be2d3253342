// Finds the addresses of an image's imports.
#pragma once

#include <optional>
#include <string>

namespace dovrel::macho {

class ImportSource {
  public:
    virtual ~ImportSource() = default;

    /// Returns the address for a symbol that the image imports from the library with this install name. The
    /// symbol is named as in the image: a C function begins with "_". Returns nothing if the symbol has not
    /// been reviewed or does not exist. A null address is a valid result.
    virtual std::optional<void*> find(const std::string& library, const std::string& symbol) const = 0;
};

}  // namespace dovrel::macho
