// A bundle's executable as it lies in its file: the slice for one processor and what its load commands say.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "macho/format/ByteReader.h"

namespace dovrel::macho {

enum class Processor : uint32_t { kI386 = 7, kX86_64 = 0x01000007 };

constexpr Processor kOwnProcessor = sizeof(void*) == 8 ? Processor::kX86_64 : Processor::kI386;

// Addresses are those that the linker gave; an image of a bundle begins at 0.

struct Segment {
    std::string name;
    uint64_t address;
    uint64_t memorySize;
    uint64_t fileOffset;
    uint64_t fileSize;
    uint32_t protection;
};

struct Section {
    std::string segment;
    std::string name;
    uint64_t address;
    uint64_t size;
    uint32_t type;
};

enum SectionType : uint32_t {
    kInitialiserPointers = 0x9,
    kTerminatorPointers = 0xA,
    kThreadVariables = 0x13
};

enum Protection : uint32_t { kReadable = 1, kWritable = 2, kExecutable = 4 };

class MachOFile {
  public:
    /// The whole content of a file; where it is universal, its slice for the processor. Throws FormatError
    /// where that is not there, not a bundle, or does not lie inside the file with all its parts.
    MachOFile(std::vector<uint8_t> content, Processor processor);

    /// The same for a file by its path.
    static MachOFile read(const std::string& path, Processor processor = kOwnProcessor);

    size_t wordSize() const { return wordSize_; }
    const std::vector<Segment>& segments() const { return segments_; }
    const std::vector<Section>& sections() const { return sections_; }
    /// Install names, in the order in which bindings count them (from 1).
    const std::vector<std::string>& libraries() const { return libraries_; }
    /// How much memory all segments need.
    uint64_t memorySize() const { return memorySize_; }
    /// Null where there is no such section.
    const Section* section(const std::string& segment, const std::string& name) const;

    ByteReader bytes(const Segment& segment) const {
        return slice().part(segment.fileOffset, segment.fileSize);
    }

    // The parts of the fix-up information.
    ByteReader rebases() const { return part(rebases_); }
    ByteReader bindings() const { return part(bindings_); }
    ByteReader weakBindings() const { return part(weakBindings_); }
    ByteReader lazyBindings() const { return part(lazyBindings_); }
    ByteReader exports() const { return part(exports_); }

  private:
    struct Range {
        uint32_t offset = 0;
        uint32_t size = 0;
    };

    ByteReader slice() const { return {slice_.data(), slice_.size()}; }
    ByteReader part(const Range& range) const { return slice().part(range.offset, range.size); }
    void readHeader(Processor processor);
    void readCommand(uint32_t kind, ByteReader command);
    void readSegment(ByteReader command);
    void readFixups(ByteReader command);

    std::vector<uint8_t> slice_;
    size_t wordSize_ = 0;
    std::vector<Segment> segments_;
    std::vector<Section> sections_;
    std::vector<std::string> libraries_;
    uint64_t memorySize_ = 0;
    bool hasFixups_ = false;
    Range rebases_;
    Range bindings_;
    Range weakBindings_;
    Range lazyBindings_;
    Range exports_;
};

}  // namespace dovrel::macho
