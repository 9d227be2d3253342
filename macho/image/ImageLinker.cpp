#include "macho/image/ImageLinker.h"

#include "macho/format/ExportTrie.h"
#include "macho/format/RebaseOpcodes.h"

namespace dovrel::macho {

namespace {

// Symbols that several images define weakly come from the standard library here, because this process
// contains no other image in this format.
constexpr char kSharedLibrary[] = "/usr/lib/libc++.1.dylib";

}  // namespace

ImageLinker::ImageLinker(const MachOFile& file, MappedImage& image, const ImportSource& imports)
    : file_(file), image_(image), imports_(imports), exports_(exportedSymbols(file.exports())) {}

void ImageLinker::link() {
    for (const uint64_t word : rebasedWords(file_))
        image_.setWord(word, image_.word(word) + reinterpret_cast<uintptr_t>(image_.base()));
    for (const Binding& binding : ordinaryBindings(file_))
        bind(binding);
    for (const Binding& binding : lazyBindings(file_))
        bind(binding);
    for (const Binding& binding : weakBindings(file_))
        bindWeakly(binding);
    if (missing_.empty()) return;
    std::string message = "these imports have not been reviewed or are not there:";
    for (const std::string& symbol : missing_)
        message += "\n  " + symbol;
    throw FormatError(message);
}

std::string ImageLinker::findLibrary(const Binding& binding) const {
    const auto index = static_cast<uint64_t>(binding.library) - 1;
    if (index < file_.libraries().size()) return file_.libraries()[static_cast<size_t>(index)];
    throw FormatError(binding.symbol + " is bound to no library");
}

std::optional<void*> ImageLinker::findOwn(const std::string& symbol) const {
    const auto found = exports_.find(symbol);
    if (found == exports_.end()) return std::nullopt;
    return image_.at(found->second);
}

std::optional<void*> ImageLinker::find(const Binding& binding) const {
    if (binding.library == kThisImage) return findOwn(binding.symbol);
    return imports_.find(findLibrary(binding), binding.symbol);
}

void ImageLinker::bind(const Binding& binding) {
    const std::optional<void*> address = find(binding);
    if (address.has_value()) {
        set(binding, *address);
    } else if (binding.isOptional) {
        image_.setWord(binding.address, 0);
    } else {
        const bool isOwn = binding.library == kThisImage;
        missing_.insert(binding.symbol + " from " + (isOwn ? "itself" : findLibrary(binding)));
    }
}

// If no address is found, the place already contains the address of the image's own definition.
void ImageLinker::bindWeakly(const Binding& binding) {
    std::optional<void*> address = findOwn(binding.symbol);
    if (!address.has_value()) address = imports_.find(kSharedLibrary, binding.symbol);
    if (address.has_value()) set(binding, *address);
}

void ImageLinker::set(const Binding& binding, void* address) {
    uintptr_t value = reinterpret_cast<uintptr_t>(address);
    if (address != nullptr) value += static_cast<uintptr_t>(binding.addend);
    if (binding.type == BindingType::kTextDistance)
        value -= reinterpret_cast<uintptr_t>(image_.at(binding.address, sizeof value)) + sizeof value;
    image_.setWord(binding.address, value);
}

}  // namespace dovrel::macho
