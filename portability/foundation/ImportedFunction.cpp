#include "portability/foundation/ImportedFunction.h"

#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

namespace portability {

namespace {

#if __ELF_NATIVE_CLASS == 64
using Relocation = ElfW(Rela);
constexpr int kRelocations = DT_RELA;
constexpr int kSize = DT_RELASZ;
constexpr int kSymbolShift = 32;
#else
using Relocation = ElfW(Rel);
constexpr int kRelocations = DT_REL;
constexpr int kSize = DT_RELSZ;
constexpr int kSymbolShift = 8;
#endif

struct Search {
    uintptr_t address;
    const char* name;
    void** place;
    bool isProtected;
};

bool contains(const dl_phdr_info& library, uint32_t kind, uintptr_t address) {
    for (int index = 0; index < library.dlpi_phnum; ++index) {
        const ElfW(Phdr)& part = library.dlpi_phdr[index];
        const uintptr_t begin = library.dlpi_addr + part.p_vaddr;
        if (part.p_type == kind && address >= begin && address - begin < part.p_memsz) return true;
    }
    return false;
}

/// The tables of a loaded library. The dynamic loader has already converted most of
/// their offsets into addresses.
class Tables {
  public:
    explicit Tables(const dl_phdr_info& library) : base_(library.dlpi_addr) {
        for (int index = 0; index < library.dlpi_phnum; ++index) {
            const ElfW(Phdr)& part = library.dlpi_phdr[index];
            if (part.p_type == PT_DYNAMIC) entries_ = reinterpret_cast<ElfW(Dyn)*>(base_ + part.p_vaddr);
        }
    }

    void** findPlace(const char* name) const {
        if (entries_ == nullptr) return nullptr;
        void** const place = placeIn(DT_JMPREL, DT_PLTRELSZ, name);
        return place != nullptr ? place : placeIn(kRelocations, kSize, name);
    }

  private:
    uintptr_t value(intptr_t tag) const {
        for (const ElfW(Dyn)* entry = entries_; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == tag) return entry->d_un.d_val;
        }
        return 0;
    }

    template <typename Item>
    const Item* table(intptr_t tag) const {
        const uintptr_t found = value(tag);
        return reinterpret_cast<const Item*>(found < base_ ? found + base_ : found);
    }

    void** placeIn(intptr_t relocations, intptr_t size, const char* name) const {
        const auto* const symbols = table<ElfW(Sym)>(DT_SYMTAB);
        const char* const names = table<char>(DT_STRTAB);
        const Relocation* const first = table<Relocation>(relocations);
        const size_t count = value(size) / sizeof(Relocation);
        for (size_t index = 0; index < count; ++index) {
            const auto symbol = first[index].r_info >> kSymbolShift;
            if (symbol != 0 && std::strcmp(names + symbols[symbol].st_name, name) == 0)
                return reinterpret_cast<void**>(base_ + first[index].r_offset);
        }
        return nullptr;
    }

    const uintptr_t base_;
    const ElfW(Dyn) * entries_ = nullptr;
};

int searchLibrary(dl_phdr_info* library, size_t, void* context) {
    Search& search = *static_cast<Search*>(context);
    if (!contains(*library, PT_LOAD, search.address)) return 0;
    search.place = Tables(*library).findPlace(search.name);
    search.isProtected = contains(*library, PT_GNU_RELRO, reinterpret_cast<uintptr_t>(search.place));
    return 1;
}

bool protectPage(void** place, int protection) {
    const auto pageSize = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t page = reinterpret_cast<uintptr_t>(place) / pageSize * pageSize;
    return mprotect(reinterpret_cast<void*>(page), pageSize, protection) == 0;
}

}  // namespace

ImportedFunction::ImportedFunction(const void* address, const char* name) noexcept {
    Search search = {reinterpret_cast<uintptr_t>(address), name, nullptr, false};
    dl_iterate_phdr(searchLibrary, &search);
    place_ = search.place;
    isProtected_ = search.isProtected;
}

void ImportedFunction::redirect(void* replacement) noexcept {
    if (place_ == nullptr) return;
    original_ = *place_;
    write(replacement);
}

void ImportedFunction::restore() noexcept {
    if (place_ != nullptr) write(original_);
}

// The dynamic loader makes such places read-only after relocation.
void ImportedFunction::write(void* function) noexcept {
    if (isProtected_ && !protectPage(place_, PROT_READ | PROT_WRITE)) return;
    __atomic_store_n(place_, function, __ATOMIC_RELEASE);
    if (isProtected_) protectPage(place_, PROT_READ);
}

}  // namespace portability
