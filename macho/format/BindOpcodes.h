// Where an image holds addresses of other libraries' functions and variables.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

enum class BindingType : uint8_t { kPointer = 1, kTextAddress = 2, kTextDistance = 3 };

/// Library ordinals that are no library's number.
enum SpecialLibrary : int64_t { kThisImage = 0, kAnyLibrary = -2 };

struct Binding {
    uint64_t address = 0;
    BindingType type = BindingType::kPointer;
    std::string symbol;
    /// From 1, in the order of MachOFile::libraries, or a SpecialLibrary.
    int64_t library = kThisImage;
    int64_t addend = 0;
    /// May be missing; is null then.
    bool isOptional = false;
};

// Each throws FormatError where the instructions are not known or point outside their segment.

/// What is bound when the image is loaded.
std::vector<Binding> ordinaryBindings(const MachOFile& file);
/// What is shared among all images that define it; the library is of no meaning.
std::vector<Binding> weakBindings(const MachOFile& file);
/// What is bound at its first call.
std::vector<Binding> lazyBindings(const MachOFile& file);

}  // namespace dovrel::macho
