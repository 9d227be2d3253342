#include "tests/macho/format/FileBuilder.h"

namespace dovrel::macho {

namespace {

constexpr size_t kHeaderSize = 32;
constexpr uint32_t kSegmentSize = 72 + 80;
constexpr uint32_t kFixupsSize = 48;
constexpr char kLibrary[] = "/usr/lib/one.dylib";
constexpr uint32_t kLibrarySize = 24 + 24;

void putField(DwarfBytes& bytes, const std::string& text) {
    std::string field = text;
    field.resize(16);
    bytes.append(field.data(), field.size());
}

void putSegment(DwarfBytes& bytes, const FileBuilder& file) {
    bytes.put<uint32_t>(kSegment64);
    bytes.put<uint32_t>(kSegmentSize);
    putField(bytes, "__DATA");
    for (const uint64_t word :
         {file.segmentAddress, file.segmentMemory, file.segmentFileOffset, file.segmentFileSize})
        bytes.put(word);
    for (const uint32_t word : {3u, 3u, 1u, 0u})  // protections, number of sections, flags
        bytes.put(word);
    putField(bytes, file.sectionName);
    putField(bytes, "__DATA");
    bytes.put(file.sectionAddress);
    bytes.put(file.sectionSize);
    for (int word = 0; word < 8; ++word)
        bytes.put<uint32_t>(0);
}

void putLibrary(DwarfBytes& bytes) {
    bytes.put<uint32_t>(kLoadLibrary);
    bytes.put(kLibrarySize);
    bytes.put<uint32_t>(24);
    for (int word = 0; word < 3; ++word)
        bytes.put<uint32_t>(0);
    bytes.append(kLibrary, sizeof kLibrary);
    bytes.alignTo(8);
}

}  // namespace

std::vector<uint8_t> FileBuilder::build() const {
    DwarfBytes bytes;
    const uint32_t commands = 2u + (hasFixups ? 1 : 0) + (extraCommand != 0 ? 1 : 0);
    for (const uint32_t word : {magic, processor, 3u, type, commands, 0u, 0u, 0u})
        bytes.put(word);
    putSegment(bytes, *this);
    putLibrary(bytes);
    if (extraCommand != 0) {
        bytes.put(extraCommand);
        bytes.put<uint32_t>(8);
    }
    size_t end = bytes.size() + (hasFixups ? kFixupsSize : 0);
    DwarfBytes tail;
    if (hasFixups) {
        bytes.put<uint32_t>(kFixupsOnly);
        bytes.put(kFixupsSize);
        for (const auto* part : {&rebases, &bindings, &weakBindings, &lazyBindings, &exports}) {
            bytes.put(static_cast<uint32_t>(end + tail.size()));
            bytes.put(static_cast<uint32_t>(part->size()));
            tail.append(part->data(), part->size());
        }
    }
    const std::vector<uint8_t> parts = tail.take();
    bytes.append(parts.data(), parts.size());
    return bytes.take();
}

std::vector<uint8_t> universal(const std::vector<uint8_t>& slice, Processor processor) {
    constexpr uint32_t kOffset = 64;
    DwarfBytes bytes;
    for (const uint32_t word : {kUniversalMagic, 1u, static_cast<uint32_t>(processor), 3u, kOffset,
                                static_cast<uint32_t>(slice.size()), 0u})
        bytes.put(__builtin_bswap32(word));
    bytes.alignTo(kOffset);
    bytes.append(slice.data(), slice.size());
    return bytes.take();
}

}  // namespace dovrel::macho
