// Reads sections that are lists of pointers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "macho/format/MachOFile.h"

namespace dovrel::macho {

/// Returns the address of each pointer in the sections with this name, in all segments.
inline std::vector<uint64_t> pointerPlaces(const MachOFile& file, const std::string& name) {
    std::vector<uint64_t> places;
    for (const Section& section : file.sections()) {
        if (section.name != name) continue;
        for (uint64_t at = 0; at + file.wordSize() <= section.size; at += file.wordSize())
            places.push_back(section.address + at);
    }
    return places;
}

}  // namespace dovrel::macho
