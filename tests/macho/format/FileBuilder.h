// Builds small files in the format, valid and invalid ones, for the tests of the code that reads it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "macho/format/DwarfBytes.h"
#include "macho/format/MachOFile.h"

namespace dovrel::macho {

/// A 64-bit bundle with one segment "__DATA" of 0x100 bytes in memory at address 0x1000, a section "__data"
/// in it, and one library, "/usr/lib/one.dylib". A test changes the members before it builds the file.
struct FileBuilder {
    uint32_t magic = kMagic64;
    uint32_t processor = static_cast<uint32_t>(Processor::kX86_64);
    uint32_t type = kBundleType;
    uint64_t segmentAddress = 0x1000;
    uint64_t segmentMemory = 0x100;
    uint64_t segmentFileOffset = 0;
    uint64_t segmentFileSize = 0x20;
    std::string sectionName = "__data";
    uint64_t sectionAddress = 0x1010;
    uint64_t sectionSize = 0x10;
    uint32_t extraCommand = 0;  ///< 0 adds no command
    bool hasFixups = true;
    std::vector<uint8_t> rebases;
    std::vector<uint8_t> bindings;
    std::vector<uint8_t> weakBindings;
    std::vector<uint8_t> lazyBindings;
    std::vector<uint8_t> exports;

    std::vector<uint8_t> build() const;
    MachOFile file() const { return {build(), Processor::kX86_64}; }
};

/// Returns the bytes of a universal file with one slice.
std::vector<uint8_t> universal(const std::vector<uint8_t>& slice, Processor processor);

}  // namespace dovrel::macho
