#include "InterProcessCommunication/TransferPack.h"

#include <algorithm>

#include "serialization/ByteOrder.h"

namespace dovrel {

namespace {

constexpr uint32_t kTokenAreaSize = 128;

struct DumpedBytes {
    const char* label;
    uint32_t offset;
    uint32_t length;
};

constexpr DumpedBytes kDumpedBytes[] = {
    {"TAN:                  ", 8, 4},   {"SourceObjID:          ", 32, 16},
    {"SourceClassID:        ", 48, 16}, {"DestinationObjID:     ", 80, 16},
    {"DestinationClassID:   ", 96, 16}, {"MediatorObjID:       ", 128, 16},
    {"MediatorClassID:     ", 144, 16}, {"MediatorValue:       ", 160, 16},
    {"Digest A:            ", 176, 16}, {"Digest B:            ", 192, 16},
    {"Digest C:            ", 208, 16},
};

}  // namespace

TransferPack::TransferPack(const CPPByteArray& record) : record_(record) {
    record_.requireSize(record.getSize());
    // The fixed part contains the size of the additional data, so it must be complete before
    // getTotalSize is called.
    if (record_.getSize() < kFixedSize) resize(kFixedSize);
    resize(getTotalSize());
}

void TransferPack::resize(uint32_t size) {
    record_.resize(size, 0);
    record_.requireSize(size);
}

const uint8_t* TransferPack::getAdditionalData(uint16_t& size) const {
    size = getAddDataSize();
    return record_.data() + kFixedSize;
}

void TransferPack::dump(std::FILE* output) const {
    std::fputs("\nNew TransferPack\n", output);
    std::fprintf(output, "Status:             %4x\n", getStatus());
    std::fprintf(output, "Version:            %4x\n", getVersion());
    std::fprintf(output, "DataSize            %4x\n", getDataSize());
    std::fprintf(output, "Mode                %4x\n", getMode());
    std::fprintf(output, "TPLevel             %4x\n", getTPLevel());
    std::fprintf(output, "AddDataSize         %4x\n", getAddDataSize());
    for (const DumpedBytes& field : kDumpedBytes)
        dumpBytes(output, field.label, field.offset, field.length);
    dumpToken(output, "Token 1:             ", 224);
    dumpToken(output, "Token 2:             ", 352);
}

uint16_t TransferPack::uint16At(uint32_t offset) const {
    return loadLittleEndian16(record_.data() + offset);
}

void TransferPack::dumpBytes(std::FILE* output, const char* label, uint32_t offset, uint32_t length) const {
    std::fprintf(output, "%s ", label);
    for (uint32_t i = 0; i < length; ++i)
        std::fprintf(output, "%2x ", static_cast<unsigned>(record_.getByte(offset + i)));
    std::fputc('\n', output);
}

void TransferPack::dumpToken(std::FILE* output, const char* label, uint32_t offset) const {
    dumpBytes(output, label, offset, std::min<uint32_t>(record_.getByte(offset), kTokenAreaSize));
}

}  // namespace dovrel
