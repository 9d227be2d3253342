// The reviewed imports: for each symbol of each library what stands for it on this system.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "macho/image/ImportSource.h"

namespace dovrel::macho {

class ImportTable : public ImportSource {
  public:
    /// The address may be null. Throws FormatError where the symbol stands there already.
    void add(const std::string& library, const std::string& symbol, void* address);

    /// A function, whatever its type.
    template <typename Result, typename... Arguments>
    void add(const std::string& library, const std::string& symbol, Result (*function)(Arguments...)) {
        add(library, symbol, reinterpret_cast<void*>(function));
    }

    std::optional<void*> find(const std::string& library, const std::string& symbol) const override;

    /// How many symbols there are.
    size_t size() const { return addresses_.size(); }

  private:
    std::map<std::pair<std::string, std::string>, void*> addresses_;
};

/// All of them. Whoever uses a new one has to look at what it does on both systems first, and enter it.
const ImportTable& reviewedImports();

}  // namespace dovrel::macho
