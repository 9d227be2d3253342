#include "macho/image/UnwindRegistration.h"

#include "macho/format/CompactFrame.h"
#include "macho/format/CompactUnwindTable.h"
#include "macho/format/FrameSection.h"
#include "macho/format/UnwindFrames.h"

// A function of the unwinder, which registers the description of one function. (In GCC's unwinder it
// registers a whole table; this program is linked so that it uses only the other unwinder.)
extern "C" void __register_frame(const void* description);

namespace dovrel::macho {

namespace {

uint64_t toAddress(const void* pointer) {
    return reinterpret_cast<uintptr_t>(pointer);
}

// Returns the image's own description of a function. Some linkers do not relocate the addresses in it.
const uint8_t* ownDescription(const MachOFile& file, const MappedImage& image,
                              const CompactUnwindEntry& entry) {
    const Section* const frames = file.section("__TEXT", "__eh_frame");
    if (frames == nullptr) throw FormatError("a function is described nowhere");
    const uint64_t position = frames->address + (entry.encoding & kDwarfPositionMask);
    const uint8_t* const description = image.at(position, 16);
    const uint8_t* const begin = description + 2 * sizeof(uint32_t);  // relative to this address
    int64_t distance;
    std::memcpy(&distance, begin, sizeof distance);
    if (toAddress(begin) + static_cast<uint64_t>(distance) != toAddress(image.at(entry.begin)))
        throw FormatError("a function's own description is that of another one");
    return description;
}

UnwindFunction makeFunction(const MappedImage& image, const CompactUnwindEntry& entry) {
    UnwindFunction function;
    function.begin = toAddress(image.at(entry.begin));
    function.size = entry.end - entry.begin;
    if (entry.personality != 0) function.personality = image.word(entry.personality);
    if (entry.handlers != 0) function.handlers = toAddress(image.at(entry.handlers));
    const uint8_t* const code = image.at(entry.begin, entry.end - entry.begin);
    function.instructions = callFrameInstructions(entry.encoding, {code, code + function.size});
    return function;
}

void registerCompactTable(const MachOFile& file, const MappedImage& image) {
    const Section* const section = file.section("__TEXT", "__unwind_info");
    if (section == nullptr) throw FormatError("there is no unwind table");
    const auto size = static_cast<size_t>(section->size);
    const ByteReader table(image.at(section->address, size), size);

    UnwindFrames frames;
    for (const CompactUnwindEntry& entry : compactUnwindEntries(table)) {
        if ((entry.encoding & kUnwindModeMask) == 0) continue;
        if ((entry.encoding & kUnwindModeMask) == kFrameInDwarf) {
            __register_frame(ownDescription(file, image, entry));
        } else {
            frames.add(makeFunction(image, entry));
        }
    }
    // Never freed, because the unwinder reads the descriptions until the process exits.
    const auto* const bytes = new std::vector<uint8_t>(frames.take());
    for (const size_t position : frames.positions())
        __register_frame(bytes->data() + position);
}

// 32-bit images have only the DWARF table.
void registerFrameSection(const MachOFile& file, const MappedImage& image) {
    const Section* const section = file.section("__TEXT", "__eh_frame");
    if (section == nullptr) throw FormatError("there is no unwind table");
    const auto size = static_cast<size_t>(section->size);
    uint8_t* const bytes = image.at(section->address, size);
    for (const size_t position : convertFrameSection(bytes, size))
        __register_frame(bytes + position);
}

}  // namespace

void registerForUnwinding(const MachOFile& file, const MappedImage& image) {
    if (file.wordSize() == sizeof(uint64_t)) {
        registerCompactTable(file, image);
    } else {
        registerFrameSection(file, image);
    }
}

}  // namespace dovrel::macho
