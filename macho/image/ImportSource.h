// Where the addresses come from that an image needs of others.
#pragma once

#include <optional>
#include <string>

namespace dovrel::macho {

class ImportSource {
  public:
    virtual ~ImportSource() = default;

    /// The address for a symbol (as it stands in the image, a C function with its "_") that the image was
    /// linked to find in the library of this install name. Nothing where the symbol has not been reviewed or
    /// is not there. Null is an address, too.
    virtual std::optional<void*> find(const std::string& library, const std::string& symbol) const = 0;
};

}  // namespace dovrel::macho
