// The reviewed imports: for each symbol of each library, the address that replaces it on this system.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "macho/image/ImportSource.h"

namespace dovrel::macho {

class ImportTable : public ImportSource {
  public:
    /// Adds an address, which may be null. Throws FormatError if the table already contains the symbol.
    void add(const std::string& library, const std::string& symbol, void* address);

    /// Adds a function of any type.
    template <typename Result, typename... Arguments>
    void add(const std::string& library, const std::string& symbol, Result (*function)(Arguments...)) {
        add(library, symbol, reinterpret_cast<void*>(function));
    }

    std::optional<void*> find(const std::string& library, const std::string& symbol) const override;

    /// The number of symbols.
    size_t size() const { return addresses_.size(); }

  private:
    std::map<std::pair<std::string, std::string>, void*> addresses_;
};

/// Returns the table of all reviewed imports. Before you add a symbol, compare what it does on both systems.
const ImportTable& reviewedImports();

}  // namespace dovrel::macho
