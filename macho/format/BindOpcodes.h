// Reads the bindings of an image: the places that contain addresses of other libraries' functions
// and variables.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

enum class BindingType : uint8_t { kPointer = 1, kTextAddress = 2, kTextDistance = 3 };

/// Library ordinals with a special meaning.
enum SpecialLibrary : int64_t { kThisImage = 0, kAnyLibrary = -2 };

struct Binding {
    uint64_t address = 0;
    BindingType type = BindingType::kPointer;
    std::string symbol;
    /// The number of the library in MachOFile::libraries, starting at 1, or a SpecialLibrary.
    int64_t library = kThisImage;
    int64_t addend = 0;
    /// True if the symbol may be missing; its address is then null.
    bool isOptional = false;
};

// All functions throw FormatError if an instruction is unknown or refers to an address outside its segment.

/// Returns the bindings that are resolved when the image is loaded.
std::vector<Binding> ordinaryBindings(const MachOFile& file);
/// Returns the bindings of weak symbols. All images that define such a symbol share one definition, so the
/// library of the binding has no meaning.
std::vector<Binding> weakBindings(const MachOFile& file);
/// Returns the bindings that are resolved at the first call.
std::vector<Binding> lazyBindings(const MachOFile& file);

}  // namespace dovrel::macho
