// A bundle's executable file: the slice for one processor, and the content of its load commands.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "macho/format/ByteReader.h"
#include "macho/format/FormatConstants.h"

namespace dovrel::macho {

constexpr Processor kOwnProcessor = sizeof(void*) == 8 ? Processor::kX86_64 : Processor::kI386;

// Addresses are those that the linker assigned. The image of a bundle begins at 0.

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

class MachOFile {
  public:
    /// Takes the whole content of a file. From a universal file, it uses the slice for the processor.
    /// Throws FormatError if there is no such slice, if it is not a bundle, or if one of its parts is
    /// outside the file.
    MachOFile(std::vector<uint8_t> content, Processor processor);

    /// Reads the file at `path` and does the same.
    static MachOFile read(const std::string& path, Processor processor = kOwnProcessor);

    size_t wordSize() const { return wordSize_; }
    const std::vector<Segment>& segments() const { return segments_; }
    const std::vector<Section>& sections() const { return sections_; }
    /// The install names of the libraries. Bindings refer to them by number, starting at 1.
    const std::vector<std::string>& libraries() const { return libraries_; }
    /// The size of the memory for all segments, in bytes.
    uint64_t memorySize() const { return memorySize_; }
    /// Returns the section, or null if there is none.
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
