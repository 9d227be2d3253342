#include "macho/format/MachOFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace dovrel::macho {

namespace {

constexpr size_t kNameSize = 16;

std::vector<uint8_t> selectSlice(std::vector<uint8_t> content, Processor processor) {
    ByteReader file(content.data(), content.size());
    if (file.nextBigEndian() != kUniversalMagic) return content;
    const uint32_t count = file.nextBigEndian();
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t sliceProcessor = file.nextBigEndian();
        file.nextBigEndian();  // its subtype
        const uint32_t offset = file.nextBigEndian();
        const uint32_t size = file.nextBigEndian();
        file.nextBigEndian();  // its alignment
        if (sliceProcessor != static_cast<uint32_t>(processor)) continue;
        file.part(offset, size);
        return {content.begin() + offset, content.begin() + offset + size};
    }
    throw FormatError("there is no slice for this processor");
}

}  // namespace

MachOFile MachOFile::read(const std::string& path, Processor processor) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw FormatError("cannot be opened");
    return {{std::istreambuf_iterator<char>(file), {}}, processor};
}

MachOFile::MachOFile(std::vector<uint8_t> content, Processor processor)
    : slice_(selectSlice(std::move(content), processor)) {
    readHeader(processor);
    if (!hasFixups_) throw FormatError("there is no fix-up information");
}

void MachOFile::readHeader(Processor processor) {
    ByteReader header = slice();
    const uint32_t magic = header.next<uint32_t>();
    if (magic != kMagic32 && magic != kMagic64) throw FormatError("not a Mach-O file");
    wordSize_ = magic == kMagic64 ? sizeof(uint64_t) : sizeof(uint32_t);
    if (header.next<uint32_t>() != static_cast<uint32_t>(processor))
        throw FormatError("for another processor");
    header.next<uint32_t>();  // its subtype
    if (header.next<uint32_t>() != kBundleType) throw FormatError("not a bundle");
    const uint32_t count = header.next<uint32_t>();
    header.next<uint32_t>();  // size of all commands in bytes; each command contains its own size
    header.next<uint32_t>();  // flags
    if (magic == kMagic64) header.next<uint32_t>();

    for (uint32_t i = 0; i < count; ++i) {
        const size_t begin = header.position();
        const uint32_t kind = header.next<uint32_t>();
        const uint32_t size = header.next<uint32_t>();
        if (size < 2 * sizeof(uint32_t)) throw FormatError("a load command is too short");
        ByteReader command = slice().part(begin, size);
        command.moveTo(2 * sizeof(uint32_t));
        readCommand(kind, command);
        header.moveTo(begin + size);
    }
}

void MachOFile::readCommand(uint32_t kind, ByteReader command) {
    switch (kind) {
        case kSegment32:
        case kSegment64:
            readSegment(command);
            break;
        case kLoadLibrary:
        case kLoadWeakLibrary:
        case kReexportLibrary:
            command.moveTo(command.next<uint32_t>());
            libraries_.push_back(command.nextString());
            break;
        case kFixups:
        case kFixupsOnly:
            readFixups(command);
            break;
        case kChainedFixups:
            throw FormatError("linked for a newer system: has chained fix-ups");
        default:
            break;
    }
}

void MachOFile::readSegment(ByteReader command) {
    Segment segment;
    segment.name = command.nextField(kNameSize);
    segment.address = command.nextWord(wordSize_);
    segment.memorySize = command.nextWord(wordSize_);
    segment.fileOffset = command.nextWord(wordSize_);
    segment.fileSize = command.nextWord(wordSize_);
    command.next<uint32_t>();  // the maximum protection
    segment.protection = command.next<uint32_t>();
    const uint32_t sectionCount = command.next<uint32_t>();
    command.next<uint32_t>();  // flags
    bytes(segment);            // checks that they are inside the file
    constexpr uint64_t kHighest = uint64_t{1} << 31;
    const bool isSane = segment.fileSize <= segment.memorySize && segment.address <= kHighest &&
                        segment.memorySize <= kHighest;
    if (!isSane) throw FormatError("segment " + segment.name + " has impossible bounds");

    for (uint32_t i = 0; i < sectionCount; ++i) {
        Section section;
        section.name = command.nextField(kNameSize);
        section.segment = command.nextField(kNameSize);
        section.address = command.nextWord(wordSize_);
        section.size = command.nextWord(wordSize_);
        for (int skipped = 0; skipped < 4; ++skipped)
            command.next<uint32_t>();  // offset, alignment, relocations
        section.type = command.next<uint32_t>() & kSectionTypeMask;
        for (size_t skipped = 0; skipped < wordSize_ / 4 + 1; ++skipped)
            command.next<uint32_t>();  // reserved
        const bool isInside = section.address >= segment.address && section.size <= segment.memorySize &&
                              section.address - segment.address <= segment.memorySize - section.size;
        if (!isInside) throw FormatError("section " + section.name + " lies outside its segment");
        sections_.push_back(section);
    }
    memorySize_ = std::max(memorySize_, segment.address + segment.memorySize);
    segments_.push_back(segment);
}

void MachOFile::readFixups(ByteReader command) {
    for (Range* range : {&rebases_, &bindings_, &weakBindings_, &lazyBindings_, &exports_}) {
        range->offset = command.next<uint32_t>();
        range->size = command.next<uint32_t>();
        part(*range);
    }
    hasFixups_ = true;
}

const Section* MachOFile::section(const std::string& segment, const std::string& name) const {
    for (const Section& section : sections_) {
        if (section.segment == segment && section.name == name) return &section;
    }
    return nullptr;
}

}  // namespace dovrel::macho
