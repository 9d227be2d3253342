#include "macho/imports/ImportTable.h"

#include "macho/format/ByteReader.h"
#include "macho/imports/ReviewedLibraries.h"

namespace dovrel::macho {

void ImportTable::add(const std::string& library, const std::string& symbol, void* address) {
    if (!addresses_.emplace(std::pair(library, symbol), address).second)
        throw FormatError(symbol + " is entered twice");
}

std::optional<void*> ImportTable::find(const std::string& library, const std::string& symbol) const {
    const auto found = addresses_.find(std::pair(library, symbol));
    if (found == addresses_.end()) return std::nullopt;
    return found->second;
}

const ImportTable& reviewedImports() {
    static const ImportTable table = [] {
        ImportTable all;
        addSystemLibrary(all);
        addStandardLibrary(all);
        addObjectiveCRuntime(all);
        addFrameworks(all);
        addImportsOfWidth(all);
        return all;
    }();
    return table;
}

}  // namespace dovrel::macho
